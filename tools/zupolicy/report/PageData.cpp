#include "tools/zupolicy/report/PageData.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <span>
#include <utility>

namespace zupm::tool {
namespace {

/// The time as the component writes versions: GMT, yyyymmddHHMMSS.
std::string TimeStamp()
{
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const auto day = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(now - day);
    const auto decimal = [](auto number, std::size_t digits) {
        const std::string text = std::to_string(number);
        return std::string(digits - std::min(digits, text.size()), '0') + text;
    };
    return decimal(static_cast<int>(date.year()), 4) + decimal(static_cast<unsigned>(date.month()), 2) +
           decimal(static_cast<unsigned>(date.day()), 2) + decimal(time.hours().count(), 2) +
           decimal(time.minutes().count(), 2) + decimal(time.seconds().count(), 2);
}

void WriteProblems(JsonWriter& json, const std::vector<PageProblem>& problems)
{
    json.BeginArray();
    for (const PageProblem& problem : problems) {
        json.BeginArray();
        json.Number(static_cast<std::uint64_t>(problem.severity));
        json.Number(problem.line);
        json.Number(problem.column);
        json.Text(problem.message);
        json.EndArray();
    }
    json.EndArray();
}

}  // namespace

struct PageData::Contents {
    std::vector<Number> keys;
    std::vector<Number> values;

    void Add(Number key, Number value)
    {
        keys.push_back(key);
        values.push_back(value);
    }
};

PageData::Number PageData::Text(std::string_view text)
{
    if (const auto found = m_textNumbers.find(text); found != m_textNumbers.end()) {
        return found->second;
    }
    const auto number = static_cast<Number>(m_texts.size());
    m_textNumbers.emplace(m_texts.emplace_back(text), number);
    return number;
}

PageData::Number PageData::Value(std::string_view value, bool isHidden)
{
    if (!isHidden) {
        return Text(value);
    }
    if (m_hidden == Hidden::Alike) {
        return Text(kHidden);
    }
    const auto [place, isNew] = m_hiddenNumbers.try_emplace(std::string(value), static_cast<Number>(m_texts.size()));
    if (isNew) {
        m_texts.emplace_back(kHidden);
    }
    return place->second;
}

bool PageData::IsHidden(const Key& key) const
{
    const auto [entry, kind, section, name] = key;
    switch (kind) {
        case Kind::Field:
            return m_redaction.HidesField(m_texts[name]);
        case Kind::Setting:
            return m_redaction.HidesSetting(m_texts[section], m_texts[name],
                                            m_entries.order[entry]->second.has_value());
        default:
            return false;
    }
}

void PageData::AddEntry(const PageEntry& added, Contents& contents)
{
    const model::Entry& entry = added.entry;
    const std::optional<Number> taskId = entry.id.taskId ? std::optional(Text(*entry.id.taskId)) : std::nullopt;
    const Number id = m_entries.Of({Text(entry.id.softwareId), taskId});
    const Number none = Text("");
    contents.Add(m_keys.Of({id, Kind::Version, none, none}), Text(added.version));
    for (std::size_t field = 0; taskId && field < entry.fields.size(); ++field) {
        const std::string_view name = model::kFieldNames[field];
        contents.Add(m_keys.Of({id, Kind::Field, none, Text(name)}),
                     Value(entry.fields[field], m_redaction.HidesField(name)));
    }
    for (const model::Section& section : entry.sections) {
        const Number name = Text(section.name);
        if (section.settings.IsEmpty()) {
            contents.Add(m_keys.Of({id, Kind::Section, name, none}), none);
        }
        for (const model::Setting& setting : section.settings) {
            contents.Add(m_keys.Of({id, Kind::Setting, name, Text(setting.name)}),
                         Value(setting.value, m_redaction.Hides(entry.id, section.name, setting.name)));
        }
    }
}

void PageData::Add(const PageFile& file)
{
    Contents contents;
    for (const PageEntry& entry : file.entries) {
        AddEntry(entry, contents);
    }
    File added{Text(file.name),
               Text(file.policyVersion),
               Text(file.taskVersion),
               Text(file.assignmentList),
               m_shapes.Of(contents.keys),
               m_values.size(),
               file.problems,
               file.moreProblems,
               file.failure};
    m_values.insert(m_values.end(), contents.values.begin(), contents.values.end());
    m_files.push_back(std::move(added));
}

void PageData::WriteTables(JsonWriter& json) const
{
    json.Key("texts").BeginArray();
    for (const std::string& text : m_texts) {
        json.Text(text);
    }
    json.EndArray();
    json.Key("entries").BeginArray();
    for (const auto* const entry : m_entries.order) {
        json.BeginArray();
        json.Number(entry->first);
        if (entry->second) {
            json.Number(*entry->second);
        }
        json.EndArray();
    }
    json.EndArray();
    json.Key("keys").BeginArray();
    for (const Key* const key : m_keys.order) {
        const auto [entry, kind, section, name] = *key;
        json.BeginArray();
        json.Number(entry);
        json.Number(static_cast<Number>(kind));
        json.Number(section);
        json.Number(name);
        if (IsHidden(*key)) {
            json.Number(1);
        }
        json.EndArray();
    }
    json.EndArray();
    json.Key("shapes").BeginArray();
    for (const auto* const shape : m_shapes.order) {
        json.BeginArray();
        for (const Number key : *shape) {
            json.Number(key);
        }
        json.EndArray();
    }
    json.EndArray();
}

void PageData::WriteFiles(JsonWriter& json) const
{
    json.Key("files").BeginArray();
    for (const File& file : m_files) {
        json.BeginObject();
        json.Key("name").Number(file.name);
        if (file.failure) {
            WriteProblem(json, *file.failure);
            json.EndObject();
            continue;
        }
        json.Key("policyVersion").Number(file.policyVersion);
        json.Key("taskVersion").Number(file.taskVersion);
        json.Key("assignmentList").Number(file.assignmentList);
        json.Key("shape").Number(file.shape);
        json.Key("values").BeginArray();
        const std::size_t count = m_shapes.order[file.shape]->size();
        for (const Number value : std::span(m_values).subspan(file.firstValue, count)) {
            json.Number(value);
        }
        json.EndArray();
        if (!file.problems.empty()) {
            json.Key("problems");
            WriteProblems(json, file.problems);
            json.Key("moreProblems").Number(file.moreProblems);
        }
        json.EndObject();
    }
    json.EndArray();
}

void PageData::Write(std::ostream& out, const PageHead& head) const
{
    JsonWriter json(out, JsonWriter::Form::Embedded);
    json.BeginDocument();
    json.Member("program", "zupolicy " ZUPM_VERSION);
    json.Member("kind", head.kind == PageHead::Kind::Files ? "files" : "differences");
    json.Member("title", head.title);
    json.Member("made", TimeStamp());
    json.Member("shell", std::filesystem::path::preferred_separator == '/' ? "posix" : "powershell");
    json.Key("ignoreVersions").Boolean(head.ignoreVersions);
    json.Member("edits", head.edits);
    WriteTables(json);
    WriteFiles(json);
    json.EndObject();
}

}  // namespace zupm::tool
