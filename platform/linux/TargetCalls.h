/// The system calls on files that POSIX lacks.
#pragma once

#include <sys/types.h>

#include <cstddef>

struct flock;

namespace zupm::native {

/// One function per system call, with the system's own signature, result and errno.
struct TargetCalls {
    int (*flock)(int file, int operation);
    int (*setlock)(int file, const struct flock* range);  ///< fcntl with F_OFD_SETLK
    ssize_t (*flistxattr)(int file, char* names, std::size_t capacity);
    ssize_t (*fgetxattr)(int file, const char* name, void* value, std::size_t capacity);
    int (*fsetxattr)(int file, const char* name, const void* value, std::size_t size, int flags);
    int (*fremovexattr)(int file, const char* name);
    ssize_t (*getrandom)(void* bytes, std::size_t count, unsigned flags);
};

}  // namespace zupm::native
