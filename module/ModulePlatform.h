/// What the module needs of its target; native/ and win32/ have one implementation each.
#pragma once

#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm {

/// The text of a registration script; empty when the module has none of that number.
[[nodiscard]] std::string_view RegistryScriptText(unsigned number) noexcept;

/// Makes the module's type library known, or unknown. Natively there is none, and nothing to do.
[[nodiscard]] result::Code RegisterModuleTypeLibrary(const std::u16string& modulePath) noexcept;
[[nodiscard]] result::Code UnregisterModuleTypeLibrary() noexcept;

}  // namespace zupm
