/// The bytes of an open file.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// A file's size; FileTooLarge for more than kLargestFile, or the code of the failed call.
[[nodiscard]] result::Code SizeOf(HANDLE file, std::size_t& size) noexcept;

/// Reads a whole file from its first byte, the size asked before. May throw std::bad_alloc.
[[nodiscard]] result::Code ReadAll(HANDLE file, std::string& bytes);

/// Compares a whole file with a text, a piece at a time: `isSame`, or the code of the failed call. May throw
/// std::bad_alloc.
[[nodiscard]] result::Code Compare(HANDLE file, std::string_view bytes, bool& isSame);

}  // namespace zupm::win32
