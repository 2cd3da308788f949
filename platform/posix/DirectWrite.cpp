#include "platform/posix/DirectWrite.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "platform/posix/FileErrors.h"
#include "platform/posix/SignalGuard.h"

namespace zupm::native {

namespace {

/// How long a reader may take before it reads on.
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
    const SignalGuard guard;
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

result::Code WriteAll(int file, ByteSource& bytes)
{
    for (std::string_view piece = bytes.Next(); !piece.empty(); piece = bytes.Next()) {
        if (const result::Code code = WriteAll(file, piece); code != result::Success) {
            return code;
        }
    }
    return result::Success;
}

FileHandle OpenSpecialFile(const std::string& path) noexcept
{
    FileHandle file = OpenBelow(AT_FDCWD, path.c_str(), O_WRONLY);
    struct stat status {};
    const bool isSpecial = file && Calls().fstat(file.Get(), &status) == 0 && !S_ISREG(status.st_mode);
    return isSpecial ? std::move(file) : FileHandle();
}

result::Code WriteSpecialFile(FileHandle file, ByteSource& bytes)
{
    const result::Code code = WriteAll(file.Get(), bytes);
    const bool closed = file.Close();
    return code == result::Success && !closed ? LastError() : code;
}

}  // namespace zupm::native
