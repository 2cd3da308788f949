/// The text of INI files: what may be written, one value written, one value read. No files, no encodings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm {

/// Why a setting cannot stand in an INI file, in words (ASCII); empty when it can.
///
/// An empty section or key; CR, LF or NUL anywhere; ']' in a section; '=' in a key, a key that begins with ';' or '[';
/// blanks or other control characters at either end of a section or key; an unpaired surrogate.
[[nodiscard]] std::u16string_view WhyIniRefuses(std::u16string_view section, std::u16string_view key,
                                                std::u16string_view value) noexcept;

/// The text with `key=value` in its section; nothing when WhyIniRefuses objects.
///
/// Lines end at CR LF, LF or CR; the lines written end with CR LF. Section and key are the first of their names, case
/// aside. Of an existing key only the value changes; a new key follows the last line of its section that is not blank;
/// a new section follows the last line of the text. Everything else stays as it is.
[[nodiscard]] std::optional<std::u16string> SetIniValue(std::u16string_view text, std::u16string_view section,
                                                        std::u16string_view key, std::u16string_view value);

/// The value as a reader of INI files gets it: without blanks at its ends, then without one pair of enclosing quotes.
[[nodiscard]] std::optional<std::u16string> ReadIniValue(std::u16string_view text, std::u16string_view section,
                                                         std::u16string_view key);

}  // namespace zupm
