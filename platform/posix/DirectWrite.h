/// Writing into open files.
#pragma once

#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Writes everything, also when the system takes little at once; waits when the other end of a pipe is slow. No signal
/// ends the process. SharingViolation when the other end does not read at all for a second.
[[nodiscard]] result::Code WriteAll(int file, std::string_view bytes) noexcept;

/// The same for every piece of a source. Throws what the source throws.
[[nodiscard]] result::Code WriteAll(int file, ByteSource& bytes);

/// Opens what `path` names for writing when that is neither a file nor a folder, so that it cannot be replaced by one.
/// The handle owns nothing for everything else, and for a pipe that nobody reads.
[[nodiscard]] FileHandle OpenSpecialFile(const std::string& path) noexcept;

/// Writes into a device or pipe as it is, and closes it. Throws what the source throws.
[[nodiscard]] result::Code WriteSpecialFile(FileHandle file, ByteSource& bytes);

}  // namespace zupm::native
