#include <CLI/CLI.hpp>

#include <memory>
#include <utility>

#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Edit.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

struct SetOptions {
    std::string file;
    Target target;
    std::string section;
    std::string name;
    std::string value;
    bool create = false;
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
    return {file.Create(options.target, options.fields), true, FieldsOfNewEntry(options)};
}

/// When a task goes back into the file, the component writes its identity fields into some of its settings. A value put
/// there would be lost without a message. A policy goes to the end of its siblings: one with the same ID that follows
/// it would be found from then on.
void RequireKept(PolicyFile& file, const SetOptions& options)
{
    const auto kept = file.Find(options.target)->Find(options.section, options.name);
    if (kept != options.value && !options.target.taskId) {
        throw FileFailure(ExitCode::Other, options.file,
                          Describe(options.target) +
                              ": the software ID occurs again, and the other policy would be found in place of the "
                              "changed one; zupolicy apply can edit it");
    }
    if (kept != options.value) {
        throw FileFailure(ExitCode::Other, options.file,
                          Describe(options.target) + ": setting " + Shortened(options.name) + " of section " +
                              Shortened(options.section) +
                              " repeats a field of the task and cannot be set on its own; use --display-name, --type, "
                              "--platforms or --priority");
    }
}

/// Puts the value into the entry and the entry into the file.
void Put(PolicyFile& file, Entry& entry, const SetOptions& options)
{
    entry.Put(options.section, options.name, options.value);
    try {
        file.Add(entry);
    } catch (const ProblemFailure& failure) {
        throw ProblemFailure(Explained(failure.What(), SoughtBy(options)));
    }
    RequireKept(file, options);
}

ExitCode RunSet(const SetOptions& options, Streams streams)
{
    const std::string& value = Valid(options.value);
    PolicyFile file = OpenToEdit(options.file, options.edit);
    Found found = FindOrCreate(file, options);
    const auto before = found.entry->Find(options.section, options.name);
    const bool changed = found.isNew || before != value || !found.fields.empty();
    if (changed) {
        Put(file, *found.entry, options);
    }

    Change change{options.target, found.isNew, options.section, options.name, {}, options.value, {}, changed, {}};
    change.fields = std::move(found.fields);
    if (before) {
        change.before = *before;
    }
    FinishEdit(file, std::move(change), options.edit, streams);
    return ExitCode::Ok;
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
    line.add_option("SECTION", options->section, "The section")->required();
    line.add_option("NAME", options->name, "The setting")->required();
    line.add_option("VALUE", options->value, "Its new value, which may be empty")->required();
    line.add_flag("--create", options->create, "Add the policy or task when it is not in the file");
    AddTaskFields(line, options->fields);
    AddEdit(line, options->edit);
    return [options](Streams streams) { return RunSet(*options, streams); };
}

}  // namespace

constinit const Command kSet{
    .name = "set",
    .description =
        "Change one setting. A missing section or setting is added; a missing policy or task only with "
        "--create. If the setting has the value already, FILE is not written",
    .examples =
        "  zupolicy set policy.xml PRODUCTA1000 General Enabled 1\n"
        "  zupolicy set policy.xml PRODUCTA1000 General Switch -- -x\n"
        "  zupolicy set policy.xml PRODUCTC3000 General Enabled 1 --create --output new.xml\n"
        "  zupolicy set policy.xml PRODUCTA1000 Plan Hour 3 --task '{task-9}' --create --type Scan",
    .declare = DeclareSet,
    .takesAnyValue = true,
};

}  // namespace zupm::tool
