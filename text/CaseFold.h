/// Comparing names without regard to case, the same on every target and in every locale.
#pragma once

#include <string_view>

namespace zupm {

/// The capital of a small letter of the basic plane; every other unit as it is.
[[nodiscard]] char16_t ToCapital(char16_t unit) noexcept;

[[nodiscard]] bool EqualsIgnoringCase(std::u16string_view left, std::u16string_view right) noexcept;

}  // namespace zupm
