/// UTF-8, which the tool reads and prints, and UTF-16, which the component's interfaces take.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/Utf.h"

namespace zupm::tool {

[[nodiscard]] inline bool IsUtf8(std::string_view text)
{
    return FindInvalidUtf8(text) == kValid;
}

/// UTF-16 of an argument. Throws Failure (Usage) when it is not valid UTF-8.
[[nodiscard]] std::u16string FromUtf8(std::string_view argument);

/// The argument itself. Throws as FromUtf8.
[[nodiscard]] const std::string& Valid(const std::string& argument);

/// UTF-8 of a UTF-16 text; a lone surrogate becomes U+FFFD.
[[nodiscard]] inline std::string ToUtf8(std::u16string_view text)
{
    return ToUtf8Lossy(text);
}

/// Takes one character off the front of a text that is not empty; takes nothing and returns nothing when the text does
/// not begin with a valid sequence.
[[nodiscard]] std::optional<char32_t> TakeCharacter(std::string_view& text);

}  // namespace zupm::tool
