/// What XML 1.0 can hold.
#pragma once

#include <string_view>

namespace AdvXMLParser {

inline constexpr std::string_view kCdataBegin = "<![CDATA[";
inline constexpr std::string_view kCdataEnd = "]]>";

/// Whether XML can hold every character of a text: no control character other than tab, LF and CR, no U+FFFE or U+FFFF,
/// no unpaired surrogate.
[[nodiscard]] bool IsXmlText(std::u16string_view text) noexcept;

/// Whether a text can be the name of an element or attribute that this library creates: ASCII letters, digits, '_', '-'
/// and '.', beginning with a letter or '_'.
[[nodiscard]] bool IsPlainName(std::u16string_view text) noexcept;

}  // namespace AdvXMLParser
