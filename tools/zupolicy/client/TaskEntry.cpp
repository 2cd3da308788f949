#include "client/TaskEntry.h"

#include "text/Utf8.h"

namespace zupm::tool {

void TaskEntry::PutIds(std::u16string_view softwareId, std::u16string_view taskId)
{
    Check(Object()->put_SoftwareID(Bstr(softwareId).Get()), Subject());
    Check(Object()->put_TaskID(Bstr(taskId).Get()), Subject());
}

void TaskEntry::PutFields(const TaskFields& fields)
{
    const auto put = [&](const std::optional<std::string>& value, auto setter) {
        if (value) {
            Check((Object()->*setter)(Bstr(FromUtf8(*value)).Get()), Subject());
        }
    };
    put(fields.displayName, &IPolicyTask::put_DisplayName);
    put(fields.type, &IPolicyTask::put_TaskType);
    put(fields.platforms, &IPolicyTask::put_PlatformsSupported);
    put(fields.creator, &IPolicyTask::put_CreatorID);
    if (fields.priority) {
        Check(Object()->put_Priority(*fields.priority), Subject());
    }
}

void TaskEntry::PutDefaults(std::u16string_view taskId)
{
    PutFields({ToUtf8(taskId), "", "", "", 0});
}

void TaskEntry::WriteIni(std::u16string_view path)
{
    Check(Object()->WriteTaskDataToIniFile(Bstr(path).Get()), Subject());
}

}  // namespace zupm::tool
