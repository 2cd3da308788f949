#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicySectionsMembers[] = {
    GetRow<&IPolicySections::get_SectionNames, u"pVal">(1001, u"SectionNames", "The names of the sections"),
    MethodRow<&IPolicySections::GetSettingNames, u"strSection", u"pNames">(
        1002, u"GetSettingNames", "Returns the names of the settings of a section"),
    MethodRow<&IPolicySections::GetStoredSetting, u"strSection", u"strName", u"pstrValue">(
        1003, u"GetStoredSetting", "Returns a setting of a section as it is stored, without expanding macros"),
    GetRow<&IPolicySections::get_TakenVersion, u"pVal">(
        1004, u"TakenVersion", "The version that the entry had when it was taken out of a file"),
};

constexpr InterfaceDescription kPolicySectionsDescription{IID_IPolicySections, u"IPolicySections",
                                                          kPolicySectionsMembers};

}  // namespace

const InterfaceDescription& PolicySectionsInterface() noexcept
{
    return kPolicySectionsDescription;
}

}  // namespace zupm
