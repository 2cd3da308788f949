#include <memory>

#include "client/PolicyFile.h"
#include "client/TaskEntry.h"
#include "commands/Commands.h"
#include "commands/Edit.h"
#include "text/Utf8.h"

namespace zupm::tool {
namespace {

struct Found {
    std::unique_ptr<Entry> entry;
    bool isNew;
};

std::unique_ptr<Entry> FindExisting(PolicyFile& file, const SetOptions& options)
{
    if (!options.target.taskId) {
        return file.Find(options.target);
    }
    auto task = file.FindTask(options.target);
    task->PutFields(options.fields);
    return task;
}

Found FindOrCreate(PolicyFile& file, const SetOptions& options)
{
    try {
        return {FindExisting(file, options), false};
    } catch (const CallError& error) {
        if (error.Code() != ExitCode::NotFound) {
            throw;
        }
        if (!options.create) {
            throw Failure(error.Code(), std::string(error.what()) + " (--create adds it)");
        }
    }
    return {file.Create(options.target, options.fields), true};
}

/// The component writes a task's identity fields into some of the task's own settings whenever the task goes back, so
/// a value put there would be lost without a word.
void RequireKept(PolicyFile& file, const SetOptions& options)
{
    const auto kept = file.Find(options.target)->Find(FromUtf8(options.section), FromUtf8(options.name));
    if (kept != FromUtf8(options.value)) {
        throw Failure(ExitCode::Other, options.file + ": " + Describe(options.target) + ": setting " +
                                           ForTerminal(options.name) + " of section " + ForTerminal(options.section) +
                                           " repeats a field of the task and cannot be set on its own; use " +
                                           "--display-name, --type, --platforms or --priority");
    }
}

}  // namespace

ExitCode RunCommand(const SetOptions& options, Streams streams)
{
    const std::u16string section = FromUtf8(options.section);
    const std::u16string name = FromUtf8(options.name);
    const std::u16string value = FromUtf8(options.value);

    PolicyFile file = OpenToEdit(options.file, options.edit);
    const Found found = FindOrCreate(file, options);
    const auto before = found.entry->Find(section, name);
    const bool changed = found.isNew || before != value || options.fields != TaskFields{};
    if (changed) {
        found.entry->Put(section, name, value);
        file.Add(*found.entry);
        RequireKept(file, options);
    }

    Change change{options.target, found.isNew, options.section, options.name, {}, options.value, changed, {}};
    if (before) {
        change.before = ToUtf8(*before);
    }
    FinishEdit(file, std::move(change), options.edit, streams);
    return ExitCode::Ok;
}

}  // namespace zupm::tool
