#include "platform/native/DirectWrite.h"

#include <fcntl.h>
#include <pthread.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "platform/native/FileErrors.h"
#include "platform/native/NativePath.h"

namespace zupm::native {

namespace {

/// Keeps a pipe whose reader goes away from ending the process: the component is a guest in it.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() noexcept
    {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &PipeSignal(), &m_before);
    }
    ~BrokenPipeGuard()
    {
        if (!m_wasPending) {
            constexpr timespec kNoWait{0, 0};
            sigtimedwait(&PipeSignal(), nullptr, &kNoWait);
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    const sigset_t& PipeSignal() noexcept
    {
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        return m_pipe;
    }

    sigset_t m_pipe{};
    sigset_t m_before{};
    bool m_wasPending = false;
};

/// As long as a reader may take before it reads on.
constexpr int kPatienceMilliseconds = 1000;

/// False, with errno, when the other end does not read.
bool WaitUntilWritable(int file) noexcept
{
    pollfd wanted{file, POLLOUT, 0};
    const int count = Retry([&] { return Calls().poll(&wanted, 1, kPatienceMilliseconds); });
    if (count == 0) {
        errno = EBUSY;
    }
    return count > 0;
}

}  // namespace

result::Code WriteAll(int file, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        const ssize_t written = Retry([&] { return Calls().write(file, bytes.data(), bytes.size()); });
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0) {
            return result::InputOutputError;
        } else if (errno != EAGAIN || !WaitUntilWritable(file)) {
            return LastError();
        }
    }
    return result::Success;
}

bool IsSpecialFile(const std::string& path) noexcept
{
    struct stat status {};
    return Calls().fstatat(AT_FDCWD, path.c_str(), &status, 0) == 0 && !S_ISREG(status.st_mode) &&
           !S_ISDIR(status.st_mode);
}

result::Code WriteSpecialFile(const std::string& path, std::string_view bytes) noexcept
{
    FileHandle file = OpenBelow(AT_FDCWD, path.c_str(), O_WRONLY);
    if (!file) {
        return LastError();
    }
    struct stat status {};
    if (Calls().fstat(file.Get(), &status) != 0) {
        return LastError();
    }
    // Meanwhile it may have become a file: then overwriting its beginning would tear it.
    if (S_ISREG(status.st_mode)) {
        return result::SharingViolation;
    }
    const BrokenPipeGuard guard;
    const result::Code code = WriteAll(file.Get(), bytes);
    const bool closed = file.Close();
    return code == result::Success && !closed ? LastError() : code;
}

}  // namespace zupm::native
