#include "platform/linux/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
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

constinit std::atomic<const SystemCalls*> g_calls{&kSystemCalls};  // NOLINT(cppcoreguidelines-interfaces-global-init)

}  // namespace

constinit const SystemCalls kSystemCalls = {
    .openat = OpenAt,
    .mkdirat = ::mkdirat,
    .close = ::close,
    .fstat = ::fstat,
    .fstatat = ::fstatat,
    .faccessat = ::faccessat,
    .readlinkat = ::readlinkat,
    .read = ::read,
    .pread = ::pread,
    .write = ::write,
    .poll = ::poll,
    .fsync = ::fsync,
    .flock = ::flock,
    .setlock = SetLock,
    .fchown = ::fchown,
    .fchmod = ::fchmod,
    .flistxattr = ::flistxattr,
    .fgetxattr = ::fgetxattr,
    .fsetxattr = ::fsetxattr,
    .fremovexattr = ::fremovexattr,
    .renameat = ::renameat,
    .unlinkat = ::unlinkat,
    .getrandom = ::getrandom,
};

const SystemCalls& Calls() noexcept
{
    return *g_calls.load(std::memory_order_acquire);
}

void ReplaceSystemCalls(const SystemCalls* calls) noexcept
{
    g_calls.store(calls == nullptr ? &kSystemCalls : calls, std::memory_order_release);
}

bool WasInterrupted() noexcept
{
    return errno == EINTR;
}

}  // namespace zupm::native
