#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyTaskMembers[] = {
    GetRow<&IPolicyTask::get_CreatorID, u"pVal">(1, u"CreatorID", "The task's creator ID"),
    PutRow<&IPolicyTask::put_CreatorID, u"newVal">(1, u"CreatorID", "The task's creator ID"),
    GetRow<&IPolicyTask::get_SoftwareID, u"pVal">(2, u"SoftwareID", "The software ID of the task's product"),
    PutRow<&IPolicyTask::put_SoftwareID, u"newVal">(2, u"SoftwareID", "The software ID of the task's product"),
    GetRow<&IPolicyTask::get_TaskID, u"pVal">(3, u"TaskID", "The task's ID"),
    PutRow<&IPolicyTask::put_TaskID, u"newVal">(3, u"TaskID", "The task's ID"),
    GetRow<&IPolicyTask::get_DisplayName, u"pVal">(4, u"DisplayName", "The task's display name"),
    PutRow<&IPolicyTask::put_DisplayName, u"newVal">(4, u"DisplayName", "The task's display name"),
    GetRow<&IPolicyTask::get_TaskType, u"pVal">(5, u"TaskType", "The task's type"),
    PutRow<&IPolicyTask::put_TaskType, u"newVal">(5, u"TaskType", "The task's type"),
    GetRow<&IPolicyTask::get_PlatformsSupported, u"pVal">(6, u"PlatformsSupported",
                                                          "The platforms that the task supports"),
    PutRow<&IPolicyTask::put_PlatformsSupported, u"newVal">(6, u"PlatformsSupported",
                                                            "The platforms that the task supports"),
    GetRow<&IPolicyTask::get_Priority, u"pVal">(7, u"Priority", "The task's priority, a signed 32-bit number"),
    PutRow<&IPolicyTask::put_Priority, u"newVal">(7, u"Priority", "The task's priority, a signed 32-bit number"),
    GetRow<&IPolicyTask::get_TaskData, u"pVal">(8, u"TaskData", "The task as XML text"),
    PutRow<&IPolicyTask::put_Section, u"newVal">(9, u"Section", "The section that GetSetting and PutSetting use"),
    MethodRow<&IPolicyTask::GetSetting, u"strName", u"pstrValue">(10, u"GetSetting",
                                                                  "Returns a setting of the current section"),
    MethodRow<&IPolicyTask::PutSetting, u"strName", u"strValue">(11, u"PutSetting",
                                                                 "Stores a setting in the current section"),
    MethodRow<&IPolicyTask::GetSectionSetting, u"strSection", u"strName", u"pstrValue">(
        12, u"GetSectionSetting", "Returns a setting of a section, with macros expanded"),
    MethodRow<&IPolicyTask::PutSectionSetting, u"strSection", u"strName", u"strValue">(
        13, u"PutSectionSetting", "Stores a setting in a section; a missing section or setting is created"),
    MethodRow<&IPolicyTask::RemoveSetting, u"strSection", u"strName">(14, u"RemoveSetting",
                                                                      "Removes one setting of a section"),
    MethodRow<&IPolicyTask::RemoveSection, u"strName">(15, u"RemoveSection", "Removes the first section of that name"),
    MethodRow<&IPolicyTask::WriteTaskDataToIniFile, u"bstrFileName">(
        16, u"WriteTaskDataToIniFile", "Writes the identity fields and all settings into an INI file"),
    GetRow<&IPolicyTask::get_Version, u"pstrValue">(17, u"Version",
                                                    "The time stamp that the task carried when it was bound"),
};

constexpr InterfaceDescription kPolicyTaskDescription{IID_IPolicyTask, u"IPolicyTask", kPolicyTaskMembers};

}  // namespace

const InterfaceDescription& PolicyTaskInterface() noexcept
{
    return kPolicyTaskDescription;
}

}  // namespace zupm
