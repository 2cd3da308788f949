/// Conversions between UTF-8 and UTF-16. They accept valid text only.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zupm {

inline constexpr std::size_t kValid = static_cast<std::size_t>(-1);

/// Offset of the first byte (unit) of the first sequence that is not valid (overlong forms, surrogates in UTF-8 and
/// unpaired surrogates in UTF-16 included), or kValid.
[[nodiscard]] std::size_t FindInvalidUtf8(std::string_view text) noexcept;
[[nodiscard]] std::size_t FindInvalidUtf16(std::u16string_view text) noexcept;

/// Nothing when the text is not valid.
[[nodiscard]] std::optional<std::string> ToUtf8(std::u16string_view text);
[[nodiscard]] std::optional<std::u16string> ToUtf16(std::string_view text);

/// For messages and file names on their way to a person: every invalid sequence becomes U+FFFD.
[[nodiscard]] std::string ToUtf8Lossy(std::u16string_view text);
[[nodiscard]] std::u16string ToUtf16Lossy(std::string_view text);

/// A code point of a text, and how many bytes it takes.
struct CodePoint {
    char32_t value;
    std::size_t bytes;
};

/// The code point whose first byte lies at `at` in valid UTF-8.
[[nodiscard]] CodePoint CodePointAt(std::string_view utf8, std::size_t at) noexcept;

/// Whether the texts hold the same code points; a text that is not valid equals none. Allocates nothing.
[[nodiscard]] bool EqualsUtf16(std::string_view utf8, std::u16string_view utf16) noexcept;

/// Appends one code point (at most U+10FFFF, no surrogate).
void AppendUtf8(std::string& out, char32_t codePoint);

}  // namespace zupm
