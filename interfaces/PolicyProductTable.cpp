#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyProductMembers[] = {
    GetRow<&IPolicyProduct::get_SoftwareID, u"pVal">(1, u"SoftwareID", "The software ID of the product"),
    PutRow<&IPolicyProduct::put_SoftwareID, u"newVal">(1, u"SoftwareID", "The software ID of the product"),
    GetRow<&IPolicyProduct::get_PolicyData, u"pVal">(2, u"PolicyData", "The policy as XML text"),
    PutRow<&IPolicyProduct::put_Section, u"newVal">(3, u"Section", "The section that GetSetting and PutSetting use"),
    MethodRow<&IPolicyProduct::GetSetting, u"strName", u"pstrValue">(4, u"GetSetting",
                                                                     "Returns a setting of the current section"),
    MethodRow<&IPolicyProduct::PutSetting, u"strName", u"strValue">(5, u"PutSetting",
                                                                    "Stores a setting in the current section"),
    MethodRow<&IPolicyProduct::GetSectionSetting, u"strSectionName", u"strName", u"pstrValue">(
        6, u"GetSectionSetting", "Returns a setting of a section, with macros expanded"),
    MethodRow<&IPolicyProduct::PutSectionSetting, u"strSectionName", u"strName", u"strValue">(
        7, u"PutSectionSetting", "Stores a setting in a section; a missing section or setting is created"),
    MethodRow<&IPolicyProduct::RemoveSetting, u"strSectionName", u"strName">(8, u"RemoveSetting",
                                                                             "Removes one setting of a section"),
    MethodRow<&IPolicyProduct::RemoveSection, u"strSectionName">(9, u"RemoveSection",
                                                                 "Removes the first section of that name"),
};

constexpr InterfaceDescription kPolicyProductDescription{IID_IPolicyProduct, u"IPolicyProduct", kPolicyProductMembers};

}  // namespace

const InterfaceDescription& PolicyProductInterface() noexcept
{
    return kPolicyProductDescription;
}

}  // namespace zupm
