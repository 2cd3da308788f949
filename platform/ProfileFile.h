/// What is each target's own about INI files; common/PrivateProfile.h is for callers.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm {

/// One setting on its way into an INI file. No part holds CR, LF or NUL.
struct ProfileSetting {
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

/// The file that the system's own call means by a path.
[[nodiscard]] std::u16string ProfilePath(std::u16string_view path);

/// The bytes of an INI file after the setting was written into `bytes`; those same bytes when they hold it already.
/// Nothing when that would lose what is there, or the system refuses.
[[nodiscard]] std::optional<std::string> WithSetting(const std::string& bytes, const ProfileSetting& setting);

/// Replaces the file in one step, or creates it.
[[nodiscard]] result::Code ReplaceProfile(std::u16string_view path, std::string_view bytes);

/// The form of a section's or key's name that is the same for all names that an INI file takes for one: without blanks
/// at its ends, and in capitals (Windows: every letter; natively A to Z, which is what counts natively).
[[nodiscard]] std::u16string ProfileName(std::u16string_view name);

}  // namespace zupm
