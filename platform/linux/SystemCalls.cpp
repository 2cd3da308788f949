#include "platform/posix/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdio>

namespace zupm::native {

namespace {

int OpenAt(int folder, const char* path, int flags, mode_t mode)
{
    return ::openat(folder, path, flags, mode);  // NOLINT(cppcoreguidelines-pro-type-vararg): the system's own
}

int SetLock(int file, const struct flock* range)
{
    return ::fcntl(file, F_OFD_SETLK, range);  // NOLINT(cppcoreguidelines-pro-type-vararg): the system's own
}

constexpr TargetCalls kTargetCalls = {
    .flock = ::flock,
    .setlock = SetLock,
    .flistxattr = ::flistxattr,
    .fgetxattr = ::fgetxattr,
    .fsetxattr = ::fsetxattr,
    .fremovexattr = ::fremovexattr,
    .getrandom = ::getrandom,
};

constexpr SystemCalls AllCalls() noexcept
{
    SystemCalls calls{};
    static_cast<TargetCalls&>(calls) = kTargetCalls;
    calls.openat = OpenAt;
    calls.mkdirat = ::mkdirat;
    calls.close = ::close;
    calls.fstat = ::fstat;
    calls.fstatat = ::fstatat;
    calls.faccessat = ::faccessat;
    calls.readlinkat = ::readlinkat;
    calls.read = ::read;
    calls.pread = ::pread;
    calls.write = ::write;
    calls.poll = ::poll;
    calls.fsync = ::fsync;
    calls.fchown = ::fchown;
    calls.fchmod = ::fchmod;
    calls.renameat = ::renameat;
    calls.unlinkat = ::unlinkat;
    return calls;
}

}  // namespace

constinit const SystemCalls kSystemCalls = AllCalls();

}  // namespace zupm::native
