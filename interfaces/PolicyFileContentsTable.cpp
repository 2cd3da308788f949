#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyFileContentsMembers[] = {
    GetRow<&IPolicyFileContents::get_PolicyIDs, u"pVal">(1001, u"PolicyIDs",
                                                         "The software IDs of the product policies"),
    GetRow<&IPolicyFileContents::get_TaskSoftwareIDs, u"pVal">(1002, u"TaskSoftwareIDs",
                                                               "The software IDs that have tasks"),
    MethodRow<&IPolicyFileContents::GetTaskIDs, u"strSoftwareID", u"pNames">(1003, u"GetTaskIDs",
                                                                             "Returns the task IDs of one software ID"),
    GetRow<&IPolicyFileContents::get_HasChangedOnDisk, u"pVal">(
        1004, u"HasChangedOnDisk", "Whether the file is no longer the one that was loaded"),
    MethodRow<&IPolicyFileContents::WriteIfUnchanged, u"lTimeout">(
        1005, u"WriteIfUnchanged", "Replaces the loaded file if it is still the one that was loaded"),
    GetRow<&IPolicyFileContents::get_Notices, u"pVal">(1006, u"Notices", "What is odd in the loaded document"),
    MethodRow<&IPolicyFileContents::GetStoredPolicySetting, u"strSoftwareID", u"strSection", u"strName", u"pstrValue">(
        1007, u"GetStoredPolicySetting", "Returns a setting of a policy as the document has it"),
    MethodRow<&IPolicyFileContents::GetStoredTaskSetting, u"strSoftwareID", u"strTaskID", u"strSection", u"strName",
              u"pstrValue">(1008, u"GetStoredTaskSetting", "Returns a setting of a task as the document has it"),
};

constexpr InterfaceDescription kPolicyFileContentsDescription{IID_IPolicyFileContents, u"IPolicyFileContents",
                                                              kPolicyFileContentsMembers};

}  // namespace

const InterfaceDescription& PolicyFileContentsInterface() noexcept
{
    return kPolicyFileContentsDescription;
}

}  // namespace zupm
