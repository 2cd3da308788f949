/// UTF-8, which the tool speaks, and UTF-16, which the component speaks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm::tool {

[[nodiscard]] bool IsUtf8(std::string_view text);

/// UTF-16 of a UTF-8 text. Throws Failure (usage) when the text is not valid UTF-8.
[[nodiscard]] std::u16string FromUtf8(std::string_view text);

/// UTF-8 of a UTF-16 text; a lone surrogate becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

/// Takes one character off the front of a text that is not empty; takes nothing and returns nothing when the text does
/// not begin with a valid sequence.
[[nodiscard]] std::optional<char32_t> TakeCharacter(std::string_view& text);

/// Appends a character, which is at most U+10FFFF and no surrogate.
void AppendUtf8(std::string& out, char32_t character);

}  // namespace zupm::tool
