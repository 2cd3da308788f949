/// Which interface of an object a call by name means.
#pragma once

#include <span>

#include "com/Dispatch.h"

namespace zupm {

/// One interface of an object: its members, and the object's pointer of that interface.
struct DispatchTarget {
    const InterfaceDescription* description;
    IUnknown* self;
};

/// The first interface that has a member of that name (in any case) or number. The first one when none has, so that it
/// is the one that refuses the call. There must be one.
[[nodiscard]] const DispatchTarget& FindTarget(std::span<const DispatchTarget> targets, LPCOLESTR name) noexcept;
[[nodiscard]] const DispatchTarget& FindTarget(std::span<const DispatchTarget> targets, DISPID member) noexcept;

/// The kinds of member that a call may mean. Some script engines ask for an enumerator, which is a property, as for a
/// method.
[[nodiscard]] constexpr WORD KindsOf(DISPID member, WORD flags) noexcept
{
    const bool isProperty = member == DISPID_NEWENUM && (flags & DISPATCH_METHOD) != 0;
    return isProperty ? static_cast<WORD>(flags | DISPATCH_PROPERTYGET) : flags;
}

}  // namespace zupm
