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
#include "tools/zupolicy/client/NewFileNative.h"
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

/// The folder that the backups of a file are in.
OwnedDescriptor OpenFolderOf(const std::filesystem::path& file)
{
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
    return OwnedDescriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
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

constexpr const char* kListOfRights = "system.posix_acl_access";

/// The new file may have inherited a list from its folder, which lets others in.
bool RemoveAccessList(int file)
{
    return fremovexattr(file, kListOfRights) == 0 || errno == ENODATA || errno == ENOTSUP;
}

/// The list of rights, which may give less than the mode does. A file system without such lists has none to copy.
bool CopyAccessList(int from, int to)
{
    const ssize_t size = fgetxattr(from, kListOfRights, nullptr, 0);
    if (size < 0) {
        return errno == ENODATA || errno == ENOTSUP;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t got = fgetxattr(from, kListOfRights, list.data(), list.size());
    return got == size && fsetxattr(to, kListOfRights, list.data(), list.size(), 0) == 0;
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
    return (hasOwner || fchown(to, status.st_uid, status.st_gid) == 0) && RemoveAccessList(to) &&
           fchmod(to, status.st_mode & kMode) == 0 && CopyAccessList(from, to);
}

/// Only its owner may read the copy as long as it is not complete. `backup` is what it is to be called.
void Fill(int from, const NewFile& copy, const std::string& backup)
{
    struct stat status {};
    Require(copy.IsOpen() && fstat(from, &status) == 0, backup);
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitCode::FileError, "the backup " + backup + " cannot be written: not a regular file");
    }
    Require(CopyBytes(from, copy.Get()), backup);
    Require(CopyRights(from, status, copy.Get()), backup);
    Require(fsync(copy.Get()) == 0, backup);
}

/// The name of the backup; nothing when it is taken.
std::optional<std::string> Named(NewFile& copy, const std::string& backup)
{
    const bool isNamed = copy.TakeFreeName(std::filesystem::path(backup).filename());
    Require(isNamed || errno == EEXIST, backup);
    return isNamed ? std::optional(backup) : std::nullopt;
}

}  // namespace

std::string WriteBackup(const std::string& file, const std::string& suffix)
{
    const OwnedDescriptor original = OpenOriginal(file);
    const OwnedDescriptor folder = OpenFolderOf(file);
    std::optional<NewFile> copy;
    return CreateUnderFreeName(file, suffix, [&](const std::string& backup) {
        if (!copy) {
            Require(folder.IsOpen(), backup);
            copy.emplace(folder.Get(), S_IRUSR | S_IWUSR);
            Fill(original.Get(), *copy, backup);
        }
        return Named(*copy, backup);
    });
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
