/// Reading open files.
#pragma once

#include <string>

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Reads an open file from its position to its end. Checks its kind and its size first, and reads at most kLargestFile
/// bytes, also when the file grows meanwhile. `bytes` is empty before. NotSupported (no regular file; AccessDenied for
/// a folder), FileTooLarge, or the code of the failed call. Throws std::bad_alloc.
[[nodiscard]] result::Code ReadRegularFile(const FileHandle& file, std::string& bytes);

}  // namespace zupm::native
