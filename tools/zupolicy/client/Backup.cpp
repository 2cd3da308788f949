#include "tools/zupolicy/client/Backup.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "tools/zupolicy/client/BackupName.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

using std::filesystem::path;

path PathOf(const std::string& name)
{
    return path(FromUtf8(name));
}

/// The number that a name of the folder has as a backup of the file; nothing for any other name.
std::optional<std::uint32_t> NumberIn(const path& name, const path& unnumbered)
{
    const path::string_type& text = name.native();
    const std::size_t length = unnumbered.native().size();
    if (text.size() < length || !AreEqualNames(text.substr(0, length), unnumbered)) {
        return std::nullopt;
    }
    if (text.size() == length) {
        return 0;
    }
    std::string digits;
    for (const auto unit : text.substr(length)) {
        const bool isDigit = unit >= '0' && unit <= '9';
        digits += isDigit || unit == '.' ? static_cast<char>(unit) : '?';
    }
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const bool isPlain = digits.size() > 1 && digits[0] == '.' && digits[1] != '0';
    const auto [rest, error] = std::from_chars(digits.data() + 1, end, number);
    const bool isNumber = isPlain && error == std::errc() && rest == end && number <= kLargestBackupNumber;
    return isNumber ? std::optional(number) : std::nullopt;
}

/// Calls `take` with the entry and the number of each name that a backup of the file has.
template <class Take>
void ForEachName(const std::string& file, const std::string& suffix, std::error_code& error, Take take)
{
    const path unnumbered = PathOf(file + suffix);
    const path folder = unnumbered.has_parent_path() ? unnumbered.parent_path() : path(".");
    std::filesystem::directory_iterator entries(folder, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        if (const auto number = NumberIn(entries->path().filename(), unnumbered.filename())) {
            take(*entries, *number);
        }
    }
}

[[noreturn]] void FailToList(const std::string& file, const std::error_code& error)
{
    throw Failure(ExitCode::FileError, file, "its folder cannot be read: " + error.message());
}

}  // namespace

std::string BackupName(const std::string& file, const std::string& suffix, std::uint32_t number)
{
    return file + suffix + (number == 0 ? "" : "." + std::to_string(number));
}

std::uint32_t NextBackupNumber(const std::string& file, const std::string& suffix)
{
    std::uint32_t next = 0;
    std::error_code error;
    ForEachName(file, suffix, error,
                [&](const auto& /*entry*/, std::uint32_t number) { next = std::max(next, number + 1); });
    // Who may write into a folder need not be allowed to read it. Any other failure may hide the newest backup.
    if (error && error != std::errc::permission_denied) {
        FailToList(file, error);
    }
    return next;
}

void RehearseBackup(const std::string& file, const std::string& suffix)
{
    const std::uint32_t number = NextBackupNumber(file, suffix);
    if (number > kLargestBackupNumber) {
        throw Failure(ExitCode::FileError, file, "there are too many backups of it");
    }
    RequirePossibleName(BackupName(file, suffix, number));
}

std::vector<BackupFile> BackupsOf(const std::string& file, const std::string& suffix)
{
    std::vector<BackupFile> backups;
    std::error_code error;
    ForEachName(file, suffix, error, [&](const std::filesystem::directory_entry& entry, std::uint32_t number) {
        std::error_code gone;
        if (entry.symlink_status(gone).type() != std::filesystem::file_type::regular) {
            return;
        }
        BackupFile backup{BackupName(file, suffix, number), number, entry.file_size(gone), {}};
        backup.time = entry.last_write_time(gone);
        backups.push_back(std::move(backup));
    });
    if (error) {
        FailToList(file, error);
    }
    std::ranges::sort(backups, std::ranges::greater(), &BackupFile::number);
    return backups;
}

}  // namespace zupm::tool
