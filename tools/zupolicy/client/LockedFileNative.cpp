#include "tools/zupolicy/client/LockedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/NativeDescriptor.h"
#include "tools/zupolicy/client/NewFileNative.h"

namespace zupm::tool {

/// A name in an open folder, at the end of all links. `file` is open when it exists.
struct LockedFile::Handles {
    OwnedDescriptor folder;
    std::string name;
    OwnedDescriptor file;
};

namespace {

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the system's own calls

[[noreturn]] void Refuse(const std::string& path)
{
    throw Failure(ExitCode::FileError, path, std::system_category().message(errno));
}

void RequireCall(bool succeeded, const std::string& path)
{
    if (!succeeded) {
        Refuse(path);
    }
}

/// The system's rule for links that lie where everybody may put one, whether or not it is switched on.
bool MayFollow(const std::filesystem::path& link, const std::filesystem::path& folder)
{
    struct stat linkStatus {};
    struct stat folderStatus {};
    if (lstat(link.c_str(), &linkStatus) != 0 || stat(folder.c_str(), &folderStatus) != 0) {
        return false;
    }
    constexpr mode_t kEverybodysButProtected = S_ISVTX | S_IWOTH;
    const bool isOpenToAll = (folderStatus.st_mode & kEverybodysButProtected) == kEverybodysButProtected;
    return !isOpenToAll || linkStatus.st_uid == geteuid() || linkStatus.st_uid == folderStatus.st_uid;
}

/// The path at the end of the links that the path ends with.
std::filesystem::path Followed(const std::string& path)
{
    constexpr int kMostLinks = 40;
    std::filesystem::path at = path;
    for (int links = 0; links < kMostLinks; ++links) {
        std::error_code error;
        if (!std::filesystem::is_symlink(std::filesystem::symlink_status(at, error))) {
            return at;
        }
        const std::filesystem::path folder = at.has_parent_path() ? at.parent_path() : ".";
        if (!MayFollow(at, folder)) {
            errno = EACCES;
            Refuse(path);
        }
        at = folder / std::filesystem::read_symlink(at, error);
    }
    errno = ELOOP;
    Refuse(path);
}

template <class Handles>
void Open(const std::string& path, Handles& handles)
{
    const std::filesystem::path followed = Followed(path);
    const std::filesystem::path folder = followed.has_parent_path() ? followed.parent_path() : ".";
    handles.name = followed.filename();
    handles.folder = OwnedDescriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    RequireCall(handles.folder.IsOpen(), path);
    constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    handles.file = OwnedDescriptor(openat(handles.folder.Get(), handles.name.c_str(), kFlags));
    if (!handles.file.IsOpen()) {
        return;
    }
    struct stat status {};
    RequireCall(fstat(handles.file.Get(), &status) == 0, path);
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitCode::FileError, path, "not a regular file");
    }
}

/// False when another process holds the lock.
bool TakeLock(const OwnedDescriptor& file, const std::string& path)
{
    struct flock all {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    const bool isLocked = fcntl(file.Get(), F_OFD_SETLK, &all) == 0;
    RequireCall(isLocked || errno == EAGAIN || errno == EACCES, path);
    return isLocked;
}

bool CopyAttribute(int from, int to, const char* name)
{
    constexpr std::size_t kLargestAttribute = 65536;
    std::string value(kLargestAttribute, '\0');
    std::string present(kLargestAttribute, '\0');
    const ssize_t size = fgetxattr(from, name, value.data(), value.size());
    if (size < 0) {
        return errno == ENODATA || errno == ENOTSUP;
    }
    value.resize(static_cast<std::size_t>(size));
    // A security label is often on the new file already, and setting even the same one takes a right of its own.
    const ssize_t has = fgetxattr(to, name, present.data(), present.size());
    if (has == size && present.compare(0, value.size(), value) == 0) {
        return true;
    }
    return fsetxattr(to, name, value.data(), value.size(), 0) == 0 || errno == ENOTSUP;
}

/// Copies the attributes, and with them the access list; attributes that vouch for the old bytes stay away.
bool CopyAttributes(int from, int to)
{
    constexpr const char* kAccessList = "system.posix_acl_access";
    constexpr std::string_view kTiedToTheBytes[] = {"security.evm", "security.ima"};
    constexpr std::size_t kLargestAttribute = 65536;
    std::string list(kLargestAttribute, '\0');
    const ssize_t size = flistxattr(from, list.data(), list.size());
    if (size < 0) {
        return errno == ENOTSUP || errno == ENOSYS;
    }
    // The new file may have inherited a list from its folder.
    if (fremovexattr(to, kAccessList) != 0 && errno != ENODATA && errno != ENOTSUP) {
        return false;
    }
    for (const char* name = list.data(); name < list.data() + size; name += std::string_view(name).size() + 1) {
        if (std::ranges::find(kTiedToTheBytes, name) == std::end(kTiedToTheBytes) && !CopyAttribute(from, to, name)) {
            return false;
        }
    }
    return true;
}

/// The mode comes last: changing the owner removes special bits, and until then nobody else may open the file.
void CopyMetadata(int from, int to, const std::string& path)
{
    constexpr mode_t kMode = 07777;
    struct stat status {};
    struct stat created {};
    RequireCall(fstat(from, &status) == 0 && fstat(to, &created) == 0, path);
    const bool hasOwner = created.st_uid == status.st_uid && created.st_gid == status.st_gid;
    if (!hasOwner && fchown(to, status.st_uid, status.st_gid) != 0) {
        throw Failure(ExitCode::FileError, path, "its owner or group cannot be kept");
    }
    RequireCall(CopyAttributes(from, to) && fchmod(to, status.st_mode & kMode) == 0, path);
}

/// Puts the bytes in place. `check` runs last before the renaming, and may refuse it by throwing.
template <class Handles, class Check>
void Put(const Handles& handles, std::string_view bytes, const std::string& path, Check check)
{
    constexpr mode_t kOwnerAlone = 0600;
    constexpr mode_t kWhatTheUmaskLeaves = 0666;
    // Opened before anything changes: afterwards only the flush itself can fail. A folder that may not be read cannot
    // be flushed.
    const OwnedDescriptor flushed(openat(handles.folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    NewFile file(handles.folder.Get(), handles.file.IsOpen() ? kOwnerAlone : kWhatTheUmaskLeaves);
    RequireCall(file.IsOpen() && WriteAll(file.Get(), bytes.data(), bytes.size()), path);
    if (handles.file.IsOpen()) {
        CopyMetadata(handles.file.Get(), file.Get(), path);
    }
    RequireCall(fsync(file.Get()) == 0, path);
    check();
    RequireCall(file.Replace(handles.name), path);
    if (flushed.IsOpen() && fsync(flushed.Get()) != 0 && errno != EINVAL) {
        throw Failure(ExitCode::Written, path, "was written, but its folder could not be flushed");
    }
}

}  // namespace

LockedFile::LockedFile(std::string path, std::chrono::milliseconds patience) : m_path(std::move(path))
{
    WaitUntilLocked(patience);
}

LockedFile::~LockedFile() = default;

bool LockedFile::TryLock()
{
    m_handles = std::make_unique<Handles>();
    Open(m_path, *m_handles);
    RequireCall(m_handles->file.IsOpen(), m_path);
    // Whoever held the lock before may have put a new file in this one's place.
    return TakeLock(m_handles->file, m_path) && IsInPlace();
}

bool LockedFile::IsInPlace() const
{
    struct stat opened {};
    struct stat named {};
    RequireCall(fstat(m_handles->file.Get(), &opened) == 0, m_path);
    const bool isNamed = fstatat(m_handles->folder.Get(), m_handles->name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0;
    RequireCall(isNamed || errno == ENOENT, m_path);
    return isNamed && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

std::string LockedFile::Read() const
{
    std::string bytes;
    RequireCall(ReadAll(m_handles->file.Get(), bytes), m_path);
    return bytes;
}

void LockedFile::Rehearse() const
{
    const OwnedDescriptor nameless(openat(m_handles->folder.Get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR));
    if (nameless.IsOpen()) {
        CopyMetadata(m_handles->file.Get(), nameless.Get(), m_path);
        return;
    }
    RequireCall(errno == EOPNOTSUPP || errno == EISDIR, m_path);
    RequireCall(faccessat(m_handles->folder.Get(), ".", W_OK | X_OK, AT_EACCESS) == 0, m_path);
}

void LockedFile::Replace(std::string_view bytes, const std::string* expected)
{
    Put(*m_handles, bytes, m_path, [&] { RequireUnchanged(expected); });
    m_handles.reset();
}

void WriteWhole(const std::string& path, std::string_view bytes)
{
    struct {
        OwnedDescriptor folder;
        std::string name;
        OwnedDescriptor file;
    } handles;
    Open(path, handles);
    RequireCall(handles.file.IsOpen() || errno == ENOENT, path);
    Put(handles, bytes, path, [] {});
}

// NOLINTEND(cppcoreguidelines-pro-type-vararg)

}  // namespace zupm::tool
