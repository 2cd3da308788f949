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
};

constexpr InterfaceDescription kPolicyFileContentsDescription{IID_IPolicyFileContents, u"IPolicyFileContents",
                                                              kPolicyFileContentsMembers};

}  // namespace

const InterfaceDescription& PolicyFileContentsInterface() noexcept
{
    return kPolicyFileContentsDescription;
}

}  // namespace zupm
