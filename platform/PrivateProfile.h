/// INI files: one setting written at a time, nothing lost and nothing injected.
#pragma once

#include <string_view>

namespace zupm {

/// Writes `key=value` into the section of an INI file; true when the file now holds it.
///
/// Sections and keys are found without regard to case; an existing key's value is replaced in place, a new key goes to
/// the end of its section and a new section to the end of the file. All other lines stay byte for byte. A missing file
/// is created. Line ends are CR LF.
/// A value that reading would trim or unquote (blanks at an end, a pair of enclosing quotes) is written in quotes.
/// Refused, with false, a log line of level 7 and the file as it was: an empty section or key; CR, LF or NUL anywhere;
/// ']' in a section; '=' in a key, a key that begins with ';' or '[', blanks at either end of a section or key.
/// Text that the file's 8-bit encoding cannot hold first turns the file into UTF-16 with a signature (Windows: the
/// code page; natively the 8-bit encoding is UTF-8, which holds everything).
[[nodiscard]] bool WritePrivateProfileStringW(std::u16string_view section, std::u16string_view key,
                                              std::u16string_view value, std::u16string_view path) noexcept;

}  // namespace zupm
