/// Reading open files.
#pragma once

#include <string>

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Reads an open file whole, from where it stands. Its kind and its size are asked first, and at most the largest file
/// that is allowed is read, however the file grows meanwhile. NotSupported (no regular file; AccessDenied for a
/// folder), FileTooLarge, or the code of the failed call. Throws std::bad_alloc.
[[nodiscard]] result::Code ReadRegularFile(const FileHandle& file, std::string& bytes);

}  // namespace zupm::native
