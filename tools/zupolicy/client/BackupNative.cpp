#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/client/BackupName.h"
#include "tools/zupolicy/client/NativeDescriptor.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

[[noreturn]] void Fail(const std::string& what)
{
    throw Failure(ExitCode::FileError, what + ": " + std::system_category().message(errno));
}

void Require(bool succeeded, const std::string& backup)
{
    if (!succeeded) {
        Fail("the backup " + backup + " cannot be written");
    }
}

OwnedDescriptor OpenOriginal(const std::string& file)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
    OwnedDescriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (opened.Get() < 0) {
        Fail(file);
    }
    return opened;
}

/// A new file that only its owner may read as long as it is not complete; nothing when the name is taken.
std::optional<std::pair<std::string, OwnedDescriptor>> CreateBackup(const std::string& name)
{
    // NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the system's own
    OwnedDescriptor created(
        open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    // NOLINTEND(cppcoreguidelines-pro-type-vararg)
    if (created.Get() >= 0) {
        return std::pair(name, std::move(created));
    }
    if (errno != EEXIST) {
        Fail("the backup " + name + " cannot be written");
    }
    return std::nullopt;
}

bool CopyBytes(int from, int to)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    for (;;) {
        const ssize_t count = read(from, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0;
        }
        if (!WriteAll(to, piece.data(), static_cast<std::size_t>(count))) {
            return false;
        }
    }
}

/// The list of rights, which may give less than the mode does. A file system without such lists has none to copy.
bool CopyAccessList(int from, int to)
{
    constexpr const char* kName = "system.posix_acl_access";
    const ssize_t size = fgetxattr(from, kName, nullptr, 0);
    if (size < 0) {
        return errno == ENODATA || errno == ENOTSUP;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t got = fgetxattr(from, kName, list.data(), list.size());
    return got == size && fsetxattr(to, kName, list.data(), list.size(), 0) == 0;
}

/// Owner first: giving a file away may clear bits of its mode.
bool CopyRights(int from, const struct stat& status, int to)
{
    constexpr mode_t kMode = 07777;
    struct stat created {};
    if (fstat(to, &created) != 0) {
        return false;
    }
    const bool hasOwner = created.st_uid == status.st_uid && created.st_gid == status.st_gid;
    return (hasOwner || fchown(to, status.st_uid, status.st_gid) == 0) && fchmod(to, status.st_mode & kMode) == 0 &&
           CopyAccessList(from, to);
}

void Fill(int from, const std::pair<std::string, OwnedDescriptor>& backup)
{
    const int to = backup.second.Get();
    struct stat status {};
    Require(fstat(from, &status) == 0, backup.first);
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitCode::FileError, "the backup " + backup.first + " cannot be written: not a regular file");
    }
    Require(CopyBytes(from, to), backup.first);
    Require(CopyRights(from, status, to), backup.first);
    Require(fsync(to) == 0, backup.first);
}

}  // namespace

std::string WriteBackup(const std::string& file, const std::string& suffix)
{
    const OwnedDescriptor original = OpenOriginal(file);
    const auto backup = CreateUnderFreeName(file, suffix, CreateBackup);
    try {
        Fill(original.Get(), backup);
    } catch (...) {
        RemoveBackup(backup.first);
        throw;
    }
    return backup.first;
}

void RemoveBackup(const std::string& backup) noexcept
{
    unlink(backup.c_str());
}

bool AreEqualNames(const std::filesystem::path& one, const std::filesystem::path& other)
{
    return one.native() == other.native();
}

void RequirePossibleName(const std::string& backup)
{
    struct stat status {};
    Require(lstat(backup.c_str(), &status) == 0 || errno == ENOENT, backup);
}

std::string ReadBackup(const std::string& backup)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
    const OwnedDescriptor opened(open(backup.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!opened.IsOpen() || fstat(opened.Get(), &status) != 0) {
        Fail(backup);
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitCode::FileError, backup, "not a regular file");
    }
    std::string bytes;
    if (!ReadAll(opened.Get(), bytes)) {
        Fail(backup);
    }
    return bytes;
}

}  // namespace zupm::tool
