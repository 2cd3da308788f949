/// Copies of files that are about to be replaced.
#pragma once

#include <string>

namespace zupm::tool {

/// Copies the bytes of a file into a new file beside it, flushed to the disk, with the rights (natively also the owner)
/// of the original. Its name is the file's with the suffix, and with a number when that name is taken: whatever exists
/// already stays as it is, and a link of that name is not followed. Returns the name. Throws Failure (FileError), with
/// nothing left.
[[nodiscard]] std::string WriteBackup(const std::string& file, const std::string& suffix);

/// Removes a backup again, because the file was not replaced. What cannot be removed stays.
void RemoveBackup(const std::string& backup) noexcept;

}  // namespace zupm::tool
