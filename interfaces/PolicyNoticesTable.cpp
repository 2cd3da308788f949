#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyNoticesMembers[] = {
    GetRow<&IPolicyNotices::get_Count, u"pVal">(1, u"Count", "The number of notices"),
    GetRow<&IPolicyNotices::get_Kind, u"lIndex", u"pVal">(2, u"Kind", "The kind of a notice"),
    GetRow<&IPolicyNotices::get_Line, u"lIndex", u"pVal">(3, u"Line", "The line of the tag that a notice is about"),
    GetRow<&IPolicyNotices::get_Column, u"lIndex", u"pVal">(4, u"Column",
                                                            "The column of the tag that a notice is about"),
    GetRow<&IPolicyNotices::get_SoftwareID, u"lIndex", u"pVal">(5, u"SoftwareID",
                                                                "The software ID of the policy or task of a notice"),
    GetRow<&IPolicyNotices::get_TaskID, u"lIndex", u"pVal">(6, u"TaskID", "The task ID of the task of a notice"),
    GetRow<&IPolicyNotices::get_Text, u"lIndex", u"pVal">(0, u"Text", "A notice as a sentence"),
};

constexpr InterfaceDescription kPolicyNoticesDescription{IID_IPolicyNotices, u"IPolicyNotices", kPolicyNoticesMembers};

}  // namespace

const InterfaceDescription& PolicyNoticesInterface() noexcept
{
    return kPolicyNoticesDescription;
}

}  // namespace zupm
