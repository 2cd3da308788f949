/// Renaming over a file that is open.
#pragma once

#include <cstdint>
#include <string>

namespace zupm::win32 {

/// Renames a file over another one that may be open, as long as all who have it open share deletion; they go on with
/// the old file. Readers find the old file or the new one. ERROR_SUCCESS or why not: file systems without such a rename
/// (FAT, most network shares) answer ERROR_INVALID_PARAMETER or ERROR_NOT_SUPPORTED. May throw std::bad_alloc.
[[nodiscard]] std::uint32_t RenameOverOpenFile(const std::u16string& from, const std::u16string& to);

}  // namespace zupm::win32
