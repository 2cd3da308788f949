#include <CLI/CLI.hpp>

#include <memory>
#include <utility>

#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Edit.h"
#include "tools/zupolicy/commands/FieldNotes.h"
#include "tools/zupolicy/commands/Input.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/XmlText.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

struct SetOptions {
    std::string file;
    Target target;
    std::optional<std::string> section;
    std::optional<std::string> name;
    std::optional<std::string> value;
    std::optional<std::string> valueFile;
    bool create = false;
    bool existing = false;
    TaskFields fields;
    EditOptions edit;
};

struct Found {
    std::unique_ptr<Entry> entry;
    bool isNew;
    std::vector<FieldChange> fields;
};

Sought SoughtBy(const SetOptions& options)
{
    return {options.file, options.target, options.section, options.name};
}

Found FindExisting(PolicyFile& file, const SetOptions& options)
{
    if (!options.target.taskId) {
        return {file.Find(options.target), false, {}};
    }
    auto task = file.FindTask(options.target);
    std::vector<FieldChange> fields = task->PutFields(options.fields);
    return {std::move(task), false, std::move(fields)};
}

/// The fields of a new task: those of the command line, and the defaults of the others.
std::vector<FieldChange> FieldsOfNewEntry(const SetOptions& options)
{
    if (!options.target.taskId) {
        return {};
    }
    const TaskFields& fields = options.fields;
    return {{"displayName", std::nullopt, fields.displayName.value_or(*options.target.taskId)},
            {"type", std::nullopt, fields.type.value_or("")},
            {"platforms", std::nullopt, fields.platforms.value_or("")},
            {"creator", std::nullopt, fields.creator.value_or("")},
            {"priority", std::nullopt, std::to_string(fields.priority.value_or(0))}};
}

/// The failure to find the policy or task, with the option that adds it.
ProblemFailure NotCreated(Problem problem, const Sought& sought)
{
    const std::string suggestion = SuggestionFor(*problem.code, sought);
    if (!ComplaintOfIds(sought.target.softwareId, sought.target.taskId).empty()) {
        problem.hint = suggestion;
        return ProblemFailure(std::move(problem));
    }
    problem.hint = suggestion.empty() ? "--create adds it" : suggestion;
    Problem found = problem;
    found.hint.clear();
    const std::string line = LineOf(found) + " (--create adds it)" + (suggestion.empty() ? "" : "; " + suggestion);
    return {std::move(problem), line};
}

Found FindOrCreate(PolicyFile& file, const SetOptions& options)
{
    try {
        return FindExisting(file, options);
    } catch (const ProblemFailure& failure) {
        if (failure.Code() != ExitCode::NotFound) {
            throw;
        }
        if (!options.create) {
            throw NotCreated(failure.What(), SoughtBy(options));
        }
    }
    if (const std::string complaint = ComplaintOfIds(options.target.softwareId, options.target.taskId);
        !complaint.empty()) {
        throw Failure(ExitCode::Usage, options.file, complaint + ", so nothing is added");
    }
    return {file.Create(options.target, options.fields), true, FieldsOfNewEntry(options)};
}

/// When a task goes back into the file, the component writes its identity fields into some of its settings. A value put
/// there would be lost without a message. A policy goes to the end of its siblings: one with the same ID that follows
/// it would be found from then on.
void RequireKept(PolicyFile& file, const SetOptions& options)
{
    const auto kept = file.Find(options.target)->Find(*options.section, *options.name);
    if (kept != options.value && !options.target.taskId) {
        throw Failure(ExitCode::Other, options.file,
                      Describe(options.target) +
                          ": the software ID occurs again, and the other policy would be found in place of the "
                          "changed one; zupolicy apply can edit it");
    }
    if (kept != options.value) {
        throw Failure(ExitCode::Other, options.file,
                      Describe(options.target) + ": setting " + Shortened(*options.name) + " of section " +
                          Shortened(*options.section) +
                          " repeats a field of the task and cannot be set on its own; use --display-name, --type, "
                          "--platforms or --priority");
    }
}

/// Puts the value into the entry and the entry into the file.
void Put(PolicyFile& file, Entry& entry, const SetOptions& options)
{
    if (options.section) {
        entry.Put(*options.section, *options.name, *options.value);
    }
    try {
        file.Add(entry);
    } catch (const ProblemFailure& failure) {
        throw ProblemFailure(Explained(failure.What(), SoughtBy(options)));
    }
    if (options.section) {
        RequireKept(file, options);
    }
}

/// The setting's value; with --existing it must be there.
std::optional<std::string> ValueBefore(Entry& entry, const SetOptions& options)
{
    if (!options.section) {
        return std::nullopt;
    }
    if (options.existing) {
        return Explaining(SoughtBy(options), [&] { return entry.Get(*options.section, *options.name); });
    }
    return entry.Find(*options.section, *options.name);
}

ExitCode SetIn(const SetOptions& options, Streams streams)
{
    PolicyFile file = OpenToEdit(options.file, options.edit);
    Found found = FindOrCreate(file, options);
    Change change;
    change.target = options.target;
    change.createsTarget = found.isNew;
    change.section = options.section;
    change.name = options.name;
    change.before = ValueBefore(*found.entry, options);
    change.after = options.value;
    change.isAboutFields = !options.section;
    change.changed = found.isNew || change.before != options.value || !found.fields.empty();
    if (change.changed) {
        Put(file, *found.entry, options);
    }
    if (change.changed && !found.isNew) {
        change.notes = NotesOnFields(options.file, {found.entry->State()});
    }
    change.fields = std::move(found.fields);
    FinishEdit(file, std::move(change), options.edit, streams);
    return ExitCode::Ok;
}

/// Throws Failure (Usage) for the values that others would complain about later. They would show the value.
void RequireUtf8WithoutShowing(const SetOptions& options)
{
    const TaskFields& fields = options.fields;
    for (const auto& value : {options.value, fields.displayName, fields.type, fields.platforms, fields.creator}) {
        if (value && !IsUtf8(*value)) {
            throw Failure(ExitCode::Usage, "a value is not valid UTF-8");
        }
    }
}

/// The component would only say that something was wrong.
void RequireXml(const SetOptions& options)
{
    const TaskFields& fields = options.fields;
    // Nothing with such an ID is found, which says enough unless it is to be added.
    const auto softwareId = options.create ? std::optional(options.target.softwareId) : std::nullopt;
    const auto taskId = options.create ? options.target.taskId : std::nullopt;
    const std::pair<const char*, const std::optional<std::string>&> texts[] = {
        {"the software ID", softwareId},  {"the task ID", taskId},
        {"the section", options.section}, {"the name", options.name},
        {"the value", options.value},     {"the display name", fields.displayName},
        {"the type", fields.type},        {"the platforms", fields.platforms},
        {"the creator", fields.creator}};
    for (const auto& [what, text] : texts) {
        if (const auto complaint = text ? model::ComplaintOfXml(*text) : std::nullopt) {
            throw Failure(ExitCode::Other, options.file, Describe(options.target) + ": " + what + " " + *complaint);
        }
    }
}

ExitCode RunSet(SetOptions options, Streams streams)
{
    if (options.valueFile) {
        options.value = ReadValue(*options.valueFile);
    }
    if (!options.edit.hidden.IsEmpty()) {
        RequireUtf8WithoutShowing(options);
    }
    if (options.value) {
        static_cast<void>(Valid(*options.value));
    }
    RequireXml(options);
    return SetIn(options, streams);
}

bool HasFields(const TaskFields& fields)
{
    return fields.displayName || fields.type || fields.platforms || fields.creator || fields.priority;
}

/// SECTION, NAME and a value belong together, and without them there must be something else to set.
void RequireWhole(const SetOptions& options)
{
    if (options.valueFile && options.value) {
        throw CLI::ValidationError("--value-file takes the place of VALUE");
    }
    const bool hasValue = options.value || options.valueFile;
    if (options.section && !options.name) {
        throw CLI::ValidationError("NAME is required after SECTION");
    }
    if (options.name && !hasValue) {
        throw CLI::ValidationError("VALUE is required after NAME (or --value-file)");
    }
    if (hasValue && !options.name) {
        throw CLI::ValidationError("--value-file needs SECTION and NAME");
    }
    if (!options.section && !options.create && !HasFields(options.fields)) {
        throw CLI::ValidationError("SECTION, NAME and VALUE are required, or a field of a task");
    }
}

void AddTaskFields(CLI::App& line, TaskFields& fields)
{
    const auto add = [&](const char* name, auto& value, const char* description) {
        line.add_option(name, value, description)->group("Fields of the task")->needs(line.get_option("--task"));
    };
    add("--display-name", fields.displayName, "Name shown to users (a new task: its ID)");
    add("--type", fields.type, "Type of the task");
    add("--platforms", fields.platforms, "Platforms that the task is for");
    add("--creator", fields.creator, "Who created the task");
    add("--priority", fields.priority, "Priority, a whole number (a new task: 0)");
}

Action DeclareSet(CLI::App& line)
{
    const auto options = std::make_shared<SetOptions>();
    AddFile(line, options->file);
    AddTarget(line, options->target);
    line.add_option("SECTION", options->section, "The section");
    line.add_option("NAME", options->name, "The setting");
    line.add_option("VALUE", options->value, "Its new value, which may be empty");
    line.add_option("--value-file", options->valueFile,
                    "Read the value from PATH (- for standard input) in place of VALUE, without its last line break")
        ->type_name("PATH");
    CLI::Option* const create =
        line.add_flag("--create", options->create, "Add the policy or task when it is not in the file");
    line.add_flag("--existing", options->existing, "Add nothing: a section or setting that is missing is a failure")
        ->excludes(create);
    AddTaskFields(line, options->fields);
    AddEdit(line, options->edit);
    line.callback([options] {
        RequireConsistent(options->edit);
        RequireWhole(*options);
    });
    return [options](Streams streams) {
        return Hiding(
            options->edit.hidden, streams, [&] { return RunSet(*options, streams); }, options->edit.quiet);
    };
}

}  // namespace

constinit const Command kSet{
    .name = "set",
    .description =
        "Change one setting. A missing section or setting is added; a missing policy or task only with "
        "--create. If the setting has the value already, FILE is not written. Without SECTION, NAME and VALUE only the "
        "given fields of a task change",
    .examples =
        "  zupolicy set policy.xml PRODUCTA1000 General Enabled 1\n"
        "  zupolicy set policy.xml PRODUCTA1000 General Switch -- -x\n"
        "  zupolicy set policy.xml PRODUCTA1000 --task '{task-1}' --priority 5\n"
        "  zupolicy set policy.xml PRODUCTA1000 Proxy Password --value-file secret.txt\n"
        "  zupolicy set policy.xml PRODUCTC3000 General Enabled 1 --create --output new.xml\n"
        "  zupolicy set policy.xml PRODUCTA1000 Plan Hour 3 --task '{task-9}' --create --type Scan",
    .declare = DeclareSet,
    .takesAnyValue = true,
};

}  // namespace zupm::tool
