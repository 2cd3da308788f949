/// The text of INI files as the system's own call edits it. No files, no encodings.
///
/// The rules are those that Wine's WritePrivateProfileStringW shows; a recording of it is part of the tests. It reads a
/// file whole and writes it anew, so an edit also changes the form of other lines: blank lines go, blanks around names
/// and values go, text after a section's bracket goes, lines end with CR LF.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm {

/// The text with `key=value` in its section; the text itself, to the byte, when the key has that value already.
///
/// Lines end at CR or LF. Blanks are U+0009 to U+000D, U+001A and U+0020. A line that begins with `[` is a section up
/// to its last `]`; any other is a key up to its first `=`, comments as well. Lines before the first section belong
/// to the section without a name. Of sections and keys with the same name, apart from blanks at its ends and the case
/// of A to Z, the first counts. New names are written without the blanks before them, and so is the value. A new key
/// ends its section, a new section the text. Null characters in the text cut off the name or value that they are in.
[[nodiscard]] std::u16string SetIniValue(std::u16string_view text, std::u16string_view section, std::u16string_view key,
                                         std::u16string_view value);

/// The value as the system's call for reading finds it: without blanks at its ends, then without one pair of enclosing
/// quotes.
[[nodiscard]] std::optional<std::u16string> ReadIniValue(std::u16string_view text, std::u16string_view section,
                                                         std::u16string_view key);

/// A name or value without the blanks at its ends.
[[nodiscard]] std::u16string_view WithoutIniBlanks(std::u16string_view text) noexcept;

}  // namespace zupm
