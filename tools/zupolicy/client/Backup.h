/// Copies of files that are about to be replaced.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zupm::tool {

/// Copies the bytes of a file into a new file beside it, flushed to the disk, with the rights (natively also the owner)
/// of the original. The name is the file's with the suffix; when the folder has such a name already, a number follows,
/// one more than the largest in use. So the newest backup has the largest number. Whatever exists already stays as it
/// is, and a link of that name is not followed. The copy gets its name when it is complete, so a process that is killed
/// leaves no part of a backup. Returns the name. Throws Failure (FileError), with nothing left.
[[nodiscard]] std::string WriteBackup(const std::string& file, const std::string& suffix);

/// Throws what WriteBackup would throw for a name that the system does not take. Nothing is created.
void RehearseBackup(const std::string& file, const std::string& suffix);

/// Removes a backup again, because the file was not replaced. What cannot be removed stays.
void RemoveBackup(const std::string& backup) noexcept;

/// A backup that WriteBackup made, or a file that has such a name.
struct BackupFile {
    std::string name;  ///< the path of the file that it was made of, with suffix and number
    std::uint32_t number = 0;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
};

/// The backups of a file with that suffix, newest first. Links, folders and the like are none. Throws Failure
/// (FileError) when the folder cannot be read.
[[nodiscard]] std::vector<BackupFile> BackupsOf(const std::string& file, const std::string& suffix);

/// The bytes of a backup; a link is not followed. Throws Failure (FileError).
[[nodiscard]] std::string ReadBackup(const std::string& backup);

}  // namespace zupm::tool
