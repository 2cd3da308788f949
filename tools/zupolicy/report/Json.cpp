#include "tools/zupolicy/report/Json.h"

#include <string_view>
#include <type_traits>

#include "tools/zupolicy/report/CheckReport.h"

namespace zupm::tool {
namespace {

void WriteSettings(JsonWriter& json, const FileContents& contents, const Section& section, const Redaction& redaction,
                   bool isTask)
{
    json.Key("settings").BeginArray();
    for (std::uint32_t number = section.firstSetting; number != kNone; number = contents.settings[number].next) {
        const Setting& setting = contents.settings[number];
        json.BeginObject();
        json.Member("name", contents.Text(setting.name));
        const bool isHidden = redaction.HidesSetting(contents.Text(section.name), contents.Text(setting.name), isTask);
        json.Member("value", isHidden ? kHidden : contents.Text(setting.value));
        json.EndObject();
    }
    json.EndArray();
}

template <typename Record>
void WriteSections(JsonWriter& json, const FileContents& contents, const Record& record, const Redaction& redaction)
{
    json.Key("sections").BeginArray();
    for (std::uint32_t number = record.firstSection; number < record.endSection; ++number) {
        const Section& section = contents.sections[number];
        json.BeginObject();
        json.Member("name", contents.Text(section.name));
        WriteSettings(json, contents, section, redaction, std::is_same_v<Record, Task>);
        json.EndObject();
    }
    json.EndArray();
}

void WriteFields(JsonWriter& json, const FileContents& contents, const Policy& policy, const Redaction& /*redaction*/)
{
    json.Member("softwareId", contents.Text(policy.softwareId));
    json.Member("version", contents.Text(policy.version));
}

void WriteFields(JsonWriter& json, const FileContents& contents, const Task& task, const Redaction& redaction)
{
    const auto write = [&](std::string_view name, Piece value) {
        json.Member(name, redaction.ShownField(name, contents.Text(value)));
    };
    json.Member("softwareId", contents.Text(task.softwareId));
    json.Member("taskId", contents.Text(task.taskId));
    write("displayName", task.displayName);
    write("type", task.type);
    write("platforms", task.platforms);
    write("priority", task.priority);
    write("creator", task.creator);
    json.Member("version", contents.Text(task.version));
}

template <typename Records>
void WriteRecords(JsonWriter& json, const FileContents& contents, const Records& records, const Selection& selection)
{
    json.BeginArray();
    for (const auto& record : records) {
        if (!selection.Has(contents, record)) {
            continue;
        }
        json.BeginObject();
        if (!selection.redaction.IsEmpty()) {
            json.Key("redacted").Boolean(true);
        }
        WriteFields(json, contents, record, selection.redaction);
        if (selection.withSections) {
            WriteSections(json, contents, record, selection.redaction);
        }
        json.EndObject();
    }
    json.EndArray();
}

void WriteIds(JsonWriter& json, const Target& target)
{
    json.Member("softwareId", target.softwareId);
    if (target.taskId) {
        json.Member("taskId", *target.taskId);
    }
}

void WriteWarning(JsonWriter& json, const Notice& notice)
{
    json.BeginObject();
    json.Key("line").Number(notice.line);
    json.Key("column").Number(notice.column);
    json.Member("message", notice.text);
    json.EndObject();
}

void WriteSoundReport(JsonWriter& json, const SoundFile& sound)
{
    json.Key("policies").Number(sound.counts.policies);
    json.Key("tasks").Number(sound.counts.tasks);
    json.Key("sections").Number(sound.counts.sections);
    json.Key("settings").Number(sound.counts.settings);
    json.Key("warnings").BeginArray();
    for (LONG i = 0; i < sound.notices.Count(); ++i) {
        WriteWarning(json, sound.notices.At(i));
    }
    json.EndArray();
    if (sound.problems) {
        json.Key("problems").BeginArray();
        for (const RuleProblem& problem : *sound.problems) {
            WriteProblem(json, problem);
        }
        json.EndArray();
    }
}

void WriteFieldChanges(JsonWriter& json, const std::vector<FieldChange>& fields, const Redaction& redaction)
{
    json.Key("fields").BeginArray();
    for (const FieldChange& each : fields) {
        const FieldChange field = Shown(each, redaction);
        json.BeginObject();
        json.Member("name", field.name);
        json.Key("before").TextOrNull(field.before);
        json.Member("after", field.after);
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

void WriteContentsAsJson(std::ostream& out, const std::string& file, const FileContents& contents,
                         const Selection& selection)
{
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("file", file);
    json.Member("policyVersion", contents.policyVersion);
    json.Member("taskVersion", contents.taskVersion);
    json.Member("assignmentList", contents.assignmentList);
    json.Key("policies");
    WriteRecords(json, contents, contents.policies, selection);
    json.Key("tasks");
    WriteRecords(json, contents, contents.tasks, selection);
    json.EndObject();
}

void WriteValueAsJson(std::ostream& out, const Target& target, const std::string& section, const std::string& name,
                      const std::string& value)
{
    JsonWriter json(out);
    json.BeginDocument();
    WriteIds(json, target);
    json.Member("section", section);
    json.Member("name", name);
    json.Member("value", value);
    json.EndObject();
}

void WriteChangeAsJson(std::ostream& out, const Change& change, const Redaction& redaction)
{
    JsonWriter json(out);
    json.BeginDocument();
    WriteIds(json, change.target);
    json.Key("new").Boolean(change.createsTarget);
    json.Key("section").TextOrNull(change.section);
    json.Key("name").TextOrNull(change.name);
    json.Key("before").TextOrNull(ShownValue(change, change.before, redaction));
    json.Key("after").TextOrNull(ShownValue(change, change.after, redaction));
    if (change.target.taskId) {
        WriteFieldChanges(json, change.fields, redaction);
    }
    json.Key("changed").Boolean(change.changed);
    json.Key("written").TextOrNull(change.written);
    if (change.backup) {
        json.Member("backup", *change.backup);
    }
    if (change.diff) {
        json.Member("diff", *change.diff);
    }
    json.EndObject();
}

void WriteExportAsJson(std::ostream& out, const Target& task, const std::string& written,
                       const std::function<void(const std::function<void(const Notice&)>&)>& forEachLoss)
{
    JsonWriter json(out);
    json.BeginDocument();
    WriteIds(json, task);
    json.Member("written", written);
    json.Key("warnings").BeginArray();
    forEachLoss([&](const Notice& loss) { WriteWarning(json, loss); });
    json.EndArray();
    json.EndObject();
}

void WriteReportAsJson(JsonWriter& json, const CheckReport& report)
{
    json.BeginObject();
    json.Member("file", report.file);
    json.Key("ok").Boolean(report.sound.has_value());
    if (report.sound) {
        WriteSoundReport(json, *report.sound);
    } else {
        json.Key("line").Place(report.problem.line);
        json.Key("column").Place(report.problem.column);
        json.Member("message", report.problem.message);
    }
    json.EndObject();
}

}  // namespace zupm::tool
