/// Which characters XML 1.0 can hold.
#pragma once

#include <string_view>

namespace AdvXMLParser {

inline constexpr std::string_view kCdataBegin = "<![CDATA[";
inline constexpr std::string_view kCdataEnd = "]]>";

/// Whether XML can hold every character of a text. It cannot hold control characters except tab, LF and CR, U+FFFE,
/// U+FFFF and unpaired surrogates.
[[nodiscard]] bool IsXmlText(std::u16string_view text) noexcept;

/// Whether a text can be the name of an element or attribute that this library creates: ASCII letters, digits, '_', '-'
/// and '.', beginning with a letter or '_'.
[[nodiscard]] bool IsPlainName(std::u16string_view text) noexcept;

/// Whether two texts are equal; allocates nothing.
[[nodiscard]] bool EqualsUtf16(std::string_view utf8, std::u16string_view utf16) noexcept;

}  // namespace AdvXMLParser
