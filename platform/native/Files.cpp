#include "platform/Files.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/native/AtomicReplace.h"
#include "platform/native/FileErrors.h"
#include "platform/native/NativePath.h"

namespace zupm {

namespace {

using namespace native;

/// For files whose size the system does not tell, such as its own: some of those have no end.
constexpr std::size_t kFirstRead = 4096;
constexpr std::size_t kLargestUntold = std::size_t{16} << 20;

/// Reads to the end, however the file grows or shrinks meanwhile. One byte more than it held is asked for, so that the
/// end shows without growing the buffer.
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

result::Code Read(std::u16string_view path, std::string& bytes)
{
    const std::optional<std::string> name = ToNativePath(path);
    if (!name) {
        return result::InvalidName;
    }
    const FileHandle file = OpenBelow(AT_FDCWD, name->c_str(), O_RDONLY);
    if (!file) {
        return CodeOfMissing(*name, errno);
    }
    struct stat status {};
    if (Calls().fstat(file.Get(), &status) != 0) {
        return LastError();
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? result::AccessDenied : result::NotSupported;
    }
    if (status.st_size > static_cast<off_t>(kLargestFile)) {
        return result::FileTooLarge;
    }
    return ReadToEnd(file.Get(), static_cast<std::size_t>(status.st_size), bytes);
}

}  // namespace

result::Code ReadWholeFile(std::u16string_view path, std::string& bytes) noexcept
{
    bytes.clear();
    try {
        std::string text;
        const result::Code code = Read(path, text);
        if (code == result::Success) {
            bytes = std::move(text);
        }
        return code;
    } catch (...) {
        // Nothing else throws here than memory that ran out.
        return result::OutOfMemory;
    }
}

result::Code ReplaceFileAtomically(std::u16string_view path, std::string_view bytes) noexcept
{
    try {
        return ReplaceFile(path, bytes, Durability::Flushed);
    } catch (...) {
        return result::OutOfMemory;
    }
}

}  // namespace zupm
