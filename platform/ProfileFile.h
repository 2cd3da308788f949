/// How each target holds an INI file's text and edits it; callers use common/PrivateProfile.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm {

/// One setting on its way into an INI file. No part holds CR, LF or NUL.
struct ProfileSetting {
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

/// The file that the system's own call means by a path.
[[nodiscard]] std::u16string ProfilePath(std::u16string_view path);

/// Whether the 8-bit encoding of INI files (Windows: the code page; natively UTF-8) has every character of the text.
[[nodiscard]] bool EightBitProfileHolds(std::u16string_view text);

/// The text of an 8-bit file without a signature; nothing when a byte of it would be lost.
[[nodiscard]] std::optional<std::u16string> EightBitProfileText(std::string_view bytes);

/// The bytes of an INI file after the setting was written into `bytes`, whose encoding has all its characters; those
/// same bytes when they hold it already. Nothing when the system refuses, or the result would be read in another
/// encoding.
[[nodiscard]] std::optional<std::string> EditedProfile(const std::string& bytes, const ProfileSetting& setting);

/// Gives all names that differ only in the case of letters the same form (Windows: every letter; natively A to Z).
void FoldProfileCase(std::u16string& name);

}  // namespace zupm
