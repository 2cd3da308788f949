/// The operating system's own writer of INI files.
#pragma once

#include <optional>
#include <string>

#include "platform/ProfileFile.h"

namespace zupm::win32 {

/// The bytes of an INI file after the system's WritePrivateProfileStringW wrote the setting into a file of `bytes`: a
/// private one among the user's temporary files, which is gone afterwards. Nothing when the system refuses.
[[nodiscard]] std::optional<std::string> WrittenBySystem(const std::string& bytes, const ProfileSetting& setting);

}  // namespace zupm::win32
