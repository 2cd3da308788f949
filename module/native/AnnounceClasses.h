/// Making the component's classes creatable in a process that has its code, without registration.
#pragma once

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// Announces the classes to the component runtime, under their ProgIDs with and without version. The module does it
/// when it is loaded; a program that links the component itself does it before it creates objects. Again is harmless.
[[nodiscard]] HRESULT AnnounceClasses() noexcept;
void WithdrawClasses() noexcept;

}  // namespace zupm
