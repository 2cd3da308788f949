#include "tools/zupolicy/client/Entry.h"

#include <string_view>
#include <utility>

namespace zupm::tool {

void TaskEntry::PutIds(const std::string& softwareId, const std::string& taskId)
{
    Calling(Subject(), [&] { Own().SetSoftwareId(softwareId).SetTaskId(taskId); });
}

std::vector<FieldChange> TaskEntry::PutFields(const TaskFields& fields)
{
    using Getter = std::string (zupm::Task::*)() const;
    using Setter = zupm::Task& (zupm::Task::*)(std::string_view)&;
    std::vector<FieldChange> changes;
    const auto put = [&](const char* name, const std::optional<std::string>& value, Getter getter, Setter setter) {
        if (!value) {
            return;
        }
        Calling(Subject(), [&] {
            if (std::string before = (Own().*getter)(); before != *value) {
                static_cast<void>((Own().*setter)(Valid(*value)));
                changes.push_back({name, std::move(before), *value});
            }
        });
    };
    put("displayName", fields.displayName, &zupm::Task::DisplayName, &zupm::Task::SetDisplayName);
    put("type", fields.type, &zupm::Task::Type, &zupm::Task::SetType);
    put("platforms", fields.platforms, &zupm::Task::Platforms, &zupm::Task::SetPlatforms);
    put("creator", fields.creator, &zupm::Task::Creator, &zupm::Task::SetCreator);
    PutPriority(fields.priority, changes);
    return changes;
}

void TaskEntry::PutPriority(std::optional<std::int32_t> priority, std::vector<FieldChange>& changes)
{
    Calling(Subject(), [&] {
        const std::int32_t before = Own().Priority();
        if (priority && *priority != before) {
            Own().SetPriority(*priority);
            changes.push_back({"priority", std::to_string(before), std::to_string(*priority)});
        }
    });
}

void TaskEntry::PutDefaults(const std::string& taskId)
{
    static_cast<void>(PutFields({taskId, "", "", "", 0}));
}

void TaskEntry::WriteIni(const std::string& path)
{
    Calling(Subject(), [&] { Own().WriteIni(path); });
}

}  // namespace zupm::tool
