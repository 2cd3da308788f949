#include "com/DispatchThunk.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr Member kPolicyNamesMembers[] = {
    GetRow<&IPolicyNames::get_Item, u"lIndex", u"pVal">(0, u"Item", "The name at a place, counted from 0"),
    GetRow<&IPolicyNames::get_Count, u"pVal">(1, u"Count", "The number of names"),
    GetRow<&IPolicyNames::get__NewEnum, u"pVal">(DISPID_NEWENUM, u"_NewEnum", "Returns an enumerator over the names"),
};

constexpr InterfaceDescription kPolicyNamesDescription{IID_IPolicyNames, u"IPolicyNames", kPolicyNamesMembers};

}  // namespace

const InterfaceDescription& PolicyNamesInterface() noexcept
{
    return kPolicyNamesDescription;
}

}  // namespace zupm
