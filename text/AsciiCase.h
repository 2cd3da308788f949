/// Comparing names without regard to ASCII case, as registries, INI files and calls by name do.
#pragma once

#include <algorithm>
#include <string_view>

namespace zupm {

/// The lower-case form of an ASCII letter; every other unit stays as it is.
template <class Unit>
[[nodiscard]] constexpr Unit FoldAscii(Unit unit) noexcept
{
    const bool upper = unit >= Unit{'A'} && unit <= Unit{'Z'};
    return upper ? static_cast<Unit>(unit + ('a' - 'A')) : unit;
}

template <class Unit>
[[nodiscard]] constexpr bool EqualsIgnoringAsciiCase(std::basic_string_view<Unit> left,
                                                     std::basic_string_view<Unit> right) noexcept
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](Unit a, Unit b) { return FoldAscii(a) == FoldAscii(b); });
}

}  // namespace zupm
