#include "platform/posix/FileReading.h"

#include <algorithm>

#include "platform/Comparison.h"
#include "platform/Files.h"
#include "platform/posix/FileErrors.h"

namespace zupm::native {

namespace {

/// For files whose size the system does not report, such as its own: some of those have no end.
constexpr std::size_t kFirstRead = 4096;
constexpr std::size_t kLargestUntold = std::size_t{16} << 20;

/// Reads to the end, also when the file grows or shrinks meanwhile. Asks for one byte more than its size, so that the
/// end is seen without growing the buffer.
result::Code ReadToEnd(int file, std::size_t size, std::string& bytes)
{
    const std::size_t tooLarge = size == 0 ? kLargestUntold : kLargestFile + 1;
    bytes.resize(size == 0 ? kFirstRead : size + 1);
    std::size_t filled = 0;
    for (;;) {
        if (filled >= tooLarge) {
            return result::FileTooLarge;
        }
        if (filled == bytes.size()) {
            bytes.resize(std::min(filled * 2, tooLarge));
        }
        const ssize_t count = Retry([&] { return Calls().read(file, bytes.data() + filled, bytes.size() - filled); });
        if (count < 0) {
            return LastError();
        }
        if (count == 0) {
            bytes.resize(filled);
            return result::Success;
        }
        filled += static_cast<std::size_t>(count);
    }
}

result::Code CheckRegular(const FileHandle& file, struct stat& status) noexcept
{
    if (Calls().fstat(file.Get(), &status) != 0) {
        return LastError();
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? result::AccessDenied : result::NotSupported;
    }
    return result::Success;
}

}  // namespace

result::Code ReadRegularFile(const FileHandle& file, std::string& bytes)
{
    struct stat status {};
    if (const result::Code code = CheckRegular(file, status); code != result::Success) {
        return code;
    }
    if (status.st_size > static_cast<off_t>(kLargestFile)) {
        return result::FileTooLarge;
    }
    return ReadToEnd(file.Get(), static_cast<std::size_t>(status.st_size), bytes);
}

result::Code CompareOpenFile(const FileHandle& file, RepeatableBytes& expected)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10;
    char piece[kPiece];
    Comparison comparison(expected);
    for (std::size_t at = 0;;) {
        const ssize_t count = Retry([&] { return Calls().pread(file.Get(), piece, kPiece, static_cast<off_t>(at)); });
        if (count < 0) {
            return LastError();
        }
        if (count == 0) {
            return comparison.IsAtEnd() ? result::Success : result::FileChanged;
        }
        const auto length = static_cast<std::size_t>(count);
        if (!comparison.GoesOnWith(std::string_view(piece, length))) {
            return result::FileChanged;
        }
        at += length;
    }
}

result::Code CompareRegularFile(const FileHandle& file, RepeatableBytes& expected)
{
    struct stat status {};
    const result::Code code = CheckRegular(file, status);
    return code == result::Success ? CompareOpenFile(file, expected) : code;
}

}  // namespace zupm::native
