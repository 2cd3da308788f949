/// The names that backups have.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {

/// The name of a backup: the file's with the suffix, and the number unless it is 0.
[[nodiscard]] std::string BackupName(const std::string& file, const std::string& suffix, std::uint32_t number);

/// The number of the next backup: one more than the largest in use. In a folder that the caller may not read, 0. Throws
/// Failure (FileError).
[[nodiscard]] std::uint32_t NextBackupNumber(const std::string& file, const std::string& suffix);

inline constexpr std::uint32_t kLargestBackupNumber = 999'999'999;

/// Calls `create` with one name after the other until it returns a result; it returns nothing for a name that is taken.
template <class Create>
auto CreateUnderFreeName(const std::string& file, const std::string& suffix, Create create)
{
    constexpr std::uint32_t kMostTries = 10'000;
    const std::uint32_t first = NextBackupNumber(file, suffix);
    for (std::uint32_t number = first; number < first + kMostTries && number <= kLargestBackupNumber; ++number) {
        if (auto created = create(BackupName(file, suffix, number))) {
            return *std::move(created);
        }
    }
    throw Failure(ExitCode::FileError, file, "there are too many backups of it");
}

/// How the target's system compares and checks names.
[[nodiscard]] bool AreEqualNames(const std::filesystem::path& one, const std::filesystem::path& other);
/// Throws Failure (FileError) when the system takes no file of that name.
void RequirePossibleName(const std::string& backup);

}  // namespace zupm::tool
