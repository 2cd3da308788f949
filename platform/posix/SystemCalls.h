/// The system calls on files, one by one, so that tests can make each of them fail.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

#include "TargetCalls.h"

namespace zupm::native {

/// One function per system call, with the system's own signature, result and errno: those of POSIX, and the target's.
struct SystemCalls : TargetCalls {
    int (*openat)(int folder, const char* path, int flags, mode_t mode);
    int (*mkdirat)(int folder, const char* path, mode_t mode);
    int (*close)(int file);
    int (*fstat)(int file, struct stat* status);
    int (*fstatat)(int folder, const char* path, struct stat* status, int flags);
    int (*faccessat)(int folder, const char* path, int mode, int flags);
    ssize_t (*readlinkat)(int folder, const char* path, char* target, std::size_t capacity);
    ssize_t (*read)(int file, void* bytes, std::size_t count);
    ssize_t (*pread)(int file, void* bytes, std::size_t count, off_t offset);
    ssize_t (*write)(int file, const void* bytes, std::size_t count);
    int (*poll)(pollfd* files, nfds_t count, int timeout);
    int (*fsync)(int file);  ///< what it returned for outlasts a loss of power (not everywhere the system's fsync)
    int (*fchown)(int file, uid_t user, gid_t group);
    int (*fchmod)(int file, mode_t mode);
    int (*renameat)(int oldFolder, const char* oldName, int newFolder, const char* newName);
    int (*unlinkat)(int folder, const char* name, int flags);
};

/// The system's own.
extern const SystemCalls kSystemCalls;

/// The calls that this process uses now.
[[nodiscard]] const SystemCalls& Calls() noexcept;

/// Uses other calls from now on; null goes back to the system's. For tests.
void ReplaceSystemCalls(const SystemCalls* calls) noexcept;

/// Whether a signal interrupted the last call.
[[nodiscard]] bool WasInterrupted() noexcept;

/// Repeats a call as long as a signal interrupts it. Its result, or -1 with errno.
template <class Call>
auto Retry(Call call) noexcept
{
    auto result = call();
    while (result < 0 && WasInterrupted()) {
        result = call();
    }
    return result;
}

}  // namespace zupm::native
