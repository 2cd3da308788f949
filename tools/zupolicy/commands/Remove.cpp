#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Edit.h"
#include "tools/zupolicy/commands/FieldNotes.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/Entry.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// Without a section the whole policy or task goes, without a name the whole section.
struct RemoveOptions {
    std::string file;
    Target target;
    std::optional<std::string> section;
    std::optional<std::string> name;
    bool ignoreMissing = false;
    EditOptions edit;
};

/// Whether the section exists and holds nothing of its own.
bool OnlyRepeats(model::Entry task, const std::string& section)
{
    const bool exists = task.sections.Find(section) != nullptr;
    DropRepeated(task);
    return exists && task.sections.Find(section) == nullptr;
}

/// When a task goes back into the file, the component writes its fields into some settings again. A removal of one
/// would change nothing but time stamps, each time.
void RequireOwn(Entry& entry, const RemoveOptions& options)
{
    if (!options.target.taskId) {
        return;
    }
    const std::string section = " section " + Shortened(*options.section) + " ";
    if (options.name && model::RepeatedBy(*options.section, *options.name)) {
        throw Failure(ExitCode::Other, options.file,
                      Describe(options.target) + ": setting " + Shortened(*options.name) + " of" + section +
                          "repeats a field of the task and cannot be removed");
    }
    if (!options.name && OnlyRepeats(entry.State(), *options.section)) {
        throw Failure(
            ExitCode::Other, options.file,
            Describe(options.target) + ":" + section + "only repeats fields of the task and cannot be removed");
    }
}

/// Removes the section or the setting; returns the value of a removed setting.
std::optional<std::string> RemoveInside(Entry& entry, const RemoveOptions& options)
{
    RequireOwn(entry, options);
    if (!options.name) {
        entry.RemoveSection(*options.section);
        return std::nullopt;
    }
    std::string before = entry.Get(*options.section, *options.name);
    entry.RemoveSetting(*options.section, *options.name);
    return before;
}

/// Removes what the options name from the document.
void Remove(PolicyFile& file, const RemoveOptions& options, Change& change)
{
    if (!options.section) {
        file.Remove(options.target);
        return;
    }
    const auto entry = file.Find(options.target);
    change.before = RemoveInside(*entry, options);
    file.Add(*entry);
    change.notes = NotesOnFields(options.file, {entry->State()});
}

ExitCode RunRemove(const RemoveOptions& options, Streams streams)
{
    PolicyFile file = OpenToEdit(options.file, options.edit);
    Change change;
    change.target = options.target;
    change.section = options.section;
    change.name = options.name;
    try {
        Explaining({options.file, options.target, options.section, options.name},
                   [&] { Remove(file, options, change); });
    } catch (const ProblemFailure& failure) {
        if (!options.ignoreMissing || failure.Code() != ExitCode::NotFound) {
            throw;
        }
        change.changed = false;
    }
    FinishEdit(file, std::move(change), options.edit, streams);
    return ExitCode::Ok;
}

Action DeclareRemove(CLI::App& line)
{
    const auto options = std::make_shared<RemoveOptions>();
    AddFile(line, options->file);
    AddTarget(line, options->target);
    line.add_option("SECTION", options->section, "The section");
    line.add_option("NAME", options->name, "The setting");
    line.add_flag("--ignore-missing", options->ignoreMissing, "What is not in the file is no failure (exit code 0)");
    AddEdit(line, options->edit);
    return [options](Streams streams) {
        return Hiding(
            options->edit.hidden, streams, [&] { return RunRemove(*options, streams); }, options->edit.quiet);
    };
}

}  // namespace

constinit const Command kRemove{
    .name = "remove",
    .description = "Remove a setting, a section (without NAME), or a policy or task (without SECTION)",
    .examples =
        "  zupolicy remove policy.xml PRODUCTA1000 General Enabled\n"
        "  zupolicy remove policy.xml PRODUCTA1000 General\n"
        "  zupolicy remove policy.xml PRODUCTA1000 --dry-run\n"
        "  zupolicy remove policy.xml PRODUCTA1000 General Enabled --ignore-missing --backup\n"
        "  zupolicy remove policy.xml PRODUCTA1000 --task '{task-1}'",
    .declare = DeclareRemove,
};

}  // namespace zupm::tool
