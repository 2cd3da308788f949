/// The bytes of an open file.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "platform/ByteSource.h"
#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// A file's size; FileTooLarge for more than kLargestFile, or the code of the failed call.
[[nodiscard]] result::Code SizeOf(HANDLE file, std::size_t& size) noexcept;

/// Reads from the handle's position to the end of the file, which may have grown or shrunk since its size was asked.
/// `bytes` has room for what is expected. May throw std::bad_alloc.
[[nodiscard]] result::Code ReadToEnd(HANDLE file, std::string& bytes);

/// Reads a whole file from its first byte, the size asked before. May throw std::bad_alloc.
[[nodiscard]] result::Code ReadAll(HANDLE file, std::string& bytes);

/// Reads a file from its first byte, in pieces: Success when it holds the expected bytes and no more, FileChanged
/// otherwise, or the code of the failed call. May throw std::bad_alloc.
[[nodiscard]] result::Code Compare(HANDLE file, RepeatableBytes& expected);

}  // namespace zupm::win32
