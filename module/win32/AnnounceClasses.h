/// Making the component's classes creatable in a process that has its code, without registration.
#pragma once

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// Registers the class objects with the component runtime, for this process alone; the runtime must be started. A
/// program that links the component itself does it before it creates objects. Again is harmless.
[[nodiscard]] HRESULT AnnounceClasses() noexcept;
/// Takes them back; before the runtime is stopped.
void WithdrawClasses() noexcept;

}  // namespace zupm
