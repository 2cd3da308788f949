/// Paths in the form in which file calls take them without a length limit.
#pragma once

#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// The full form of a path, with the prefix for long paths where the plain form would be cut.
/// InvalidName for an empty path, an embedded null or an unpaired surrogate; may throw std::bad_alloc.
[[nodiscard]] result::Code FullPath(std::u16string_view path, std::u16string& full);

/// The path of an open file or folder with every link followed, in the form for long paths: of its drive, or of its
/// volume when no drive letter leads there. May throw std::bad_alloc.
[[nodiscard]] result::Code FinalPath(void* handle, std::u16string& path);

/// True for what the full form shows to be a device or a pipe (`\\.\NUL`, `\\server\pipe\name`): opening such a name
/// can wait for a partner or have effects of its own.
[[nodiscard]] bool NamesDevice(std::u16string_view full) noexcept;

/// The folder of a full path, with its separator.
[[nodiscard]] std::u16string FolderOf(const std::u16string& full);

}  // namespace zupm::win32
