#include "tools/zupolicy/client/Entry.h"

#include <utility>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {

std::optional<std::u16string> Entry::Find(std::u16string_view section, std::u16string_view name)
{
    try {
        return Get(section, name);
    } catch (const CallError& error) {
        if (error.Code() == ExitCode::NotFound) {
            return std::nullopt;
        }
        throw;
    }
}

void TaskEntry::PutIds(std::u16string_view softwareId, std::u16string_view taskId)
{
    Check(Object()->put_SoftwareID(Bstr(softwareId).Get()), Subject());
    Check(Object()->put_TaskID(Bstr(taskId).Get()), Subject());
}

std::vector<FieldChange> TaskEntry::PutFields(const TaskFields& fields)
{
    std::vector<FieldChange> changes;
    const auto put = [&](const char* name, const std::optional<std::string>& value, auto getter, auto setter) {
        if (!value) {
            return;
        }
        Bstr slot;
        Check((Object()->*getter)(slot.Slot()), Subject());
        if (std::string before = ToUtf8(slot.Text()); before != *value) {
            Check((Object()->*setter)(Bstr(FromUtf8(*value)).Get()), Subject());
            changes.push_back({name, std::move(before), *value});
        }
    };
    put("displayName", fields.displayName, &IPolicyTask::get_DisplayName, &IPolicyTask::put_DisplayName);
    put("type", fields.type, &IPolicyTask::get_TaskType, &IPolicyTask::put_TaskType);
    put("platforms", fields.platforms, &IPolicyTask::get_PlatformsSupported, &IPolicyTask::put_PlatformsSupported);
    put("creator", fields.creator, &IPolicyTask::get_CreatorID, &IPolicyTask::put_CreatorID);
    PutPriority(fields.priority, changes);
    return changes;
}

void TaskEntry::PutPriority(std::optional<std::int32_t> priority, std::vector<FieldChange>& changes)
{
    LONG before = 0;
    Check(Object()->get_Priority(&before), Subject());
    if (priority && *priority != before) {
        Check(Object()->put_Priority(*priority), Subject());
        changes.push_back({"priority", std::to_string(before), std::to_string(*priority)});
    }
}

void TaskEntry::PutDefaults(std::u16string_view taskId)
{
    static_cast<void>(PutFields({ToUtf8(taskId), "", "", "", 0}));
}

void TaskEntry::WriteIni(std::u16string_view path)
{
    Check(Object()->WriteTaskDataToIniFile(Bstr(path).Get()), Subject());
}

}  // namespace zupm::tool
