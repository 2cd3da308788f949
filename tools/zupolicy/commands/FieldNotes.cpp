#include "tools/zupolicy/commands/FieldNotes.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/contents/Contents.h"

namespace zupm::tool {
namespace {

using TasksById = std::map<model::EntryId, const model::Entry*>;

/// The tasks with such a field. Most files have none, and need not be read again.
TasksById Suspects(const std::vector<model::Entry>& tasks)
{
    TasksById suspects;
    for (const model::Entry& task : tasks) {
        if (task.id.taskId && std::ranges::find(task.fields, "invalid") != task.fields.end()) {
            suspects.emplace(task.id, &task);
        }
    }
    return suspects;
}

/// "type, creator": those that the file does not have and that are written as "invalid".
std::string FilledFields(const Task& before, const model::Entry& after)
{
    const Piece pieces[] = {before.displayName, before.type, before.platforms, before.priority, before.creator};
    std::string names;
    for (std::size_t i = 0; i < after.fields.size(); ++i) {
        if (IsMissing(pieces[i]) && after.fields[i] == "invalid") {
            names += (names.empty() ? "" : ", ") + std::string(model::kFieldNames[i]);
        }
    }
    return names;
}

}  // namespace

std::vector<std::string> NotesOnFields(const std::string& path, const std::vector<model::Entry>& tasks)
{
    std::vector<std::string> notes;
    const TasksById suspects = Suspects(tasks);
    try {
        const FileContents contents = suspects.empty() ? FileContents() : ReadContents(path);
        for (const Task& task : contents.tasks) {
            const auto found =
                suspects.find({std::string(contents.Text(task.softwareId)), std::string(contents.Text(task.taskId))});
            const std::string names = found == suspects.end() ? "" : FilledFields(task, *found->second);
            if (!names.empty()) {
                std::string note = path + ": " + model::Describe(found->first);
                note += " had no " + names + "; the component writes \"invalid\" there";
                notes.push_back(std::move(note));
            }
        }
    } catch (const Failure&) {
        return {};
    }
    return notes;
}

}  // namespace zupm::tool
