#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "file/LockFile.h"

namespace zupm::tool {
namespace {

constexpr int kOpenFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

[[noreturn]] void ThrowLast()
{
    throw std::system_error(errno, std::system_category());
}

/// Who may write the guarded file may read and write the lock file; nobody else may: a reader could lock, too.
mode_t ModeFor(mode_t guarded)
{
    const mode_t writers = guarded & 0222;
    return 0600 | writers | writers << 1;
}

/// Gives a new lock file the guarded file's owner, as far as that is allowed, so that it serves him after root.
void AdaptTo(int file, const std::filesystem::path& guarded)
{
    struct stat status {};
    if (stat(guarded.c_str(), &status) == 0 && fchown(file, status.st_uid, status.st_gid) == 0) {
        static_cast<void>(fchmod(file, ModeFor(status.st_mode)));
    }
}

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): the system's own
int Open(const std::filesystem::path& path, const std::filesystem::path& guarded)
{
    const int created = open(path.c_str(), kOpenFlags | O_CREAT | O_EXCL, 0600);
    if (created >= 0) {
        AdaptTo(created, guarded);
        return created;
    }
    return errno == EEXIST ? open(path.c_str(), kOpenFlags) : -1;
}

/// fcntl with a lock.
int Control(int file, int command, struct flock& range)
{
    return fcntl(file, command, &range);
}
// NOLINTEND(cppcoreguidelines-pro-type-vararg)

struct flock WholeFile()
{
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

}  // namespace

LockFile::LockFile(const std::filesystem::path& path, const std::filesystem::path& guarded)
    : m_file(Open(path, guarded))
{
    struct stat status {};
    if (m_file < 0) {
        ThrowLast();
    }
    if (fstat(static_cast<int>(m_file), &status) != 0 || !S_ISREG(status.st_mode)) {
        close(static_cast<int>(m_file));
        throw std::system_error(std::make_error_code(std::errc::not_supported));
    }
}

LockFile::~LockFile()
{
    close(static_cast<int>(m_file));
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes who holds the file
bool LockFile::TryLock()
{
    // A lock of the process, not of the open file: of those the system tells the holder. It ends when the process
    // closes the file, and nothing else here opens it.
    struct flock range = WholeFile();
    if (Control(static_cast<int>(m_file), F_SETLK, range) == 0) {
        return true;
    }
    if (errno != EACCES && errno != EAGAIN) {
        ThrowLast();
    }
    return false;
}

std::uint64_t LockFile::Holder() const
{
    struct flock range = WholeFile();
    const bool isTold = Control(static_cast<int>(m_file), F_GETLK, range) == 0 && range.l_type != F_UNLCK;
    return isTold && range.l_pid > 0 ? static_cast<std::uint64_t>(range.l_pid) : 0;
}

}  // namespace zupm::tool
