/// The module's four entry points, for each target to export under their names.
#pragma once

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// S_FALSE while an object or a server lock keeps the module loaded; otherwise S_OK, after dropping what is cached for
/// calls by name.
[[nodiscard]] HRESULT ModuleCanUnloadNow() noexcept;

/// Hands out the class object of one of the module's classes.
[[nodiscard]] HRESULT ModuleGetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept;

/// Runs the registration scripts in object map order, then registers the type library. Stops at the first failure and
/// returns its code; what was written stays.
[[nodiscard]] HRESULT ModuleRegister() noexcept;

/// Takes back what ModuleRegister wrote, as far as it can; the code of the first failure.
[[nodiscard]] HRESULT ModuleUnregister() noexcept;

}  // namespace zupm
