/// Bringing the names in a folder to the disk.
#pragma once

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Opens the folder at `path` below `folder` (or AT_FDCWD) for FlushFolder. A folder that may not be read cannot be
/// flushed: that is no failure, and `handle` owns nothing then.
[[nodiscard]] result::Code OpenToFlush(int folder, const char* path, FileHandle& handle) noexcept;

/// Makes changed names in the folder survive a loss of power. Success too when `handle` owns nothing or the file system
/// cannot flush folders; InputOutputError.
[[nodiscard]] result::Code FlushFolder(const FileHandle& handle) noexcept;

}  // namespace zupm::native
