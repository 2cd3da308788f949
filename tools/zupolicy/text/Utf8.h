/// UTF-8, which the tool speaks, and UTF-16, which the component speaks.
#pragma once

#include <string>
#include <string_view>

namespace zupm::tool {

/// UTF-16 of a UTF-8 text. Throws Failure (usage) when the text is not valid UTF-8.
[[nodiscard]] std::u16string FromUtf8(std::string_view text);

/// UTF-8 of a UTF-16 text; a lone surrogate becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

/// A text for one line of a terminal: control characters, which could move its cursor, and the backslash are written as
/// escapes (`\n`, `\t`, `\u009b`, `\\`); everything else stays.
[[nodiscard]] std::string ForTerminal(std::string_view utf8);

}  // namespace zupm::tool
