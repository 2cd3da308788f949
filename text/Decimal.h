/// Decimal numbers as the policy file holds them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zupm {

/// Leading blanks (space, tab, CR, LF, VT, FF) and one sign, then digits until the first non-digit; no digits give 0,
/// a number out of range gives the smallest or the largest value.
[[nodiscard]] std::int64_t ParseInt64(std::u16string_view text) noexcept;
[[nodiscard]] std::int32_t ParseInt32(std::u16string_view text) noexcept;

[[nodiscard]] std::u16string FormatUnsigned(std::uint64_t value);
[[nodiscard]] std::u16string FormatSigned(std::int64_t value);

}  // namespace zupm
