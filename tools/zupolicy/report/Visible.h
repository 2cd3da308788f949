/// Texts of files, arguments and the system, in a form that is safe to print.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace zupm::tool {

/// What happens to a backslash.
enum class Backslash {
    Escaped,  ///< `\\`, so that a reader can distinguish an escape from the text
    Kept,     ///< as it is: messages hold file names, and editors jump to them
};

/// Writes a text that may hold anything as part of one line. What could move a terminal's cursor, turn the writing
/// direction, break the line or be invisible is written as an escape: control characters, format characters and
/// line separators (`\n`, `\u009b`, `\u202e`, `\U000e0001`), and each byte that is not valid UTF-8 (`\xff`).
void WriteVisible(std::ostream& out, std::string_view text, Backslash backslash);

/// As WriteVisible, for values: with escaped backslashes.
[[nodiscard]] std::string Visible(std::string_view text);

/// A name for a message, cut when it is very long: a file may repeat a long name a million times. It is not escaped,
/// because a message is escaped as a whole.
[[nodiscard]] std::string Shortened(std::string_view name);

/// As Shortened, in quotes.
[[nodiscard]] std::string Quoted(std::string_view name);

}  // namespace zupm::tool
