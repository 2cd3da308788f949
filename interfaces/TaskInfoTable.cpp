#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kTaskInfoMembers[] = {
    MethodRow<&ITaskInfo::GetFirst, u"pbstrSoftwareID", u"pbstrTaskID">(
        1, u"GetFirst", "Goes to the first task and returns its software ID and task ID"),
    MethodRow<&ITaskInfo::GetNext, u"pbstrSoftwareID", u"pbstrTaskID">(
        2, u"GetNext", "Goes to the next task and returns its software ID and task ID"),
};

constexpr InterfaceDescription kTaskInfoDescription{IID_ITaskInfo, u"ITaskInfo", kTaskInfoMembers};

}  // namespace

const InterfaceDescription& TaskInfoInterface() noexcept
{
    return kTaskInfoDescription;
}

}  // namespace zupm
