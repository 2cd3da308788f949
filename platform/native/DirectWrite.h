/// Writing into open files.
#pragma once

#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Writes everything, however little the system takes at once; waits where the other end of a pipe is slow.
/// SharingViolation when it does not read at all for a second.
[[nodiscard]] result::Code WriteAll(int file, std::string_view bytes) noexcept;

/// Whether something exists at `path` that is neither a file nor a folder, so that it cannot be replaced by one.
[[nodiscard]] bool IsSpecialFile(const std::string& path) noexcept;

/// Writes into a device or pipe as it is. NotSupported for a socket and for a pipe that nobody reads.
[[nodiscard]] result::Code WriteSpecialFile(const std::string& path, std::string_view bytes) noexcept;

}  // namespace zupm::native
