/// INI files: one setting written at a time, as the operating system's own call writes it.
#pragma once

#include <string>
#include <string_view>

namespace zupm {

/// Writes `key=value` into the section of an INI file; true when the file now holds it.
///
/// The file's bytes are those that the system's own call of this name gives, values raw: whoever reads with the
/// system's call finds what that call would have written (Windows: it is the call itself that edits the text; natively
/// the same bytes, with UTF-8 where Windows uses its code page). A file name without a folder means the Windows folder
/// on Windows, the current one natively. A missing file is created.
/// What differs from the system's call: the file is replaced in one step; text that its 8-bit encoding cannot hold
/// first turns it into UTF-16 with a signature; CR, LF or NUL in the section, key or value is refused with false, a log
/// line of level 7 and the file as it was, because it would become a setting of its own or cut one off.
/// A file that cannot be read or written gives false without a log line.
[[nodiscard]] bool WritePrivateProfileStringW(std::u16string_view section, std::u16string_view key,
                                              std::u16string_view value, std::u16string_view path) noexcept;

/// The form of a section's or key's name that is the same for all names that an INI file takes for one: without blanks
/// at its ends and without regard to case (Windows: of every letter; natively of A to Z).
[[nodiscard]] std::u16string ProfileName(std::u16string_view name);

}  // namespace zupm
