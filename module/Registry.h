/// The registry below its classes root, as registration scripts need it.
#pragma once

#include <string>

#include "zuPolicyManager/Results.h"

namespace zupm::registry {

/// Keys are paths with `\` between names. All are S_OK or the platform's code; nothing else is changed on failure.
[[nodiscard]] result::Code CreateKey(const std::u16string& key) noexcept;
/// Sets a text value, creating the key when missing; an empty name is the key's default value.
[[nodiscard]] result::Code SetValue(const std::u16string& key, const std::u16string& name,
                                    const std::u16string& value) noexcept;
/// Removes the key with everything below it; success when it did not exist.
[[nodiscard]] result::Code DeleteTree(const std::u16string& key) noexcept;

}  // namespace zupm::registry
