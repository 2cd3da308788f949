/// Reading open files.
#pragma once

#include <string>

#include "platform/ByteSource.h"
#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Reads an open file from its position to its end. Checks its kind and its size first, and reads at most kLargestFile
/// bytes, also when the file grows meanwhile. NotSupported (no regular file; AccessDenied for a
/// folder), FileTooLarge, or the code of the failed call. Throws std::bad_alloc.
[[nodiscard]] result::Code ReadRegularFile(const FileHandle& file, std::string& bytes);

/// Reads an open file from its first byte, in pieces: Success when it holds the expected bytes and no more, FileChanged
/// otherwise, or the code of the failed call. Throws what the bytes throw.
[[nodiscard]] result::Code CompareOpenFile(const FileHandle& file, RepeatableBytes& expected);

/// The same for what may be no regular file: the codes of ReadRegularFile then, and nothing is read.
[[nodiscard]] result::Code CompareRegularFile(const FileHandle& file, RepeatableBytes& expected);

}  // namespace zupm::native
