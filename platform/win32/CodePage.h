/// Text in the system's 8-bit code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm::win32 {

/// The text of at most kLargestFile bytes; bytes that are no text there become replacement characters.
[[nodiscard]] std::u16string FromCodePage(std::string_view bytes);

/// Nothing when the code page lacks a character of the text.
[[nodiscard]] std::optional<std::string> ToCodePage(std::u16string_view text);

}  // namespace zupm::win32
