#include "platform/Files.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "platform/posix/AtomicReplace.h"
#include "platform/posix/FileReading.h"
#include "platform/posix/NativePath.h"

namespace zupm {

namespace {

using namespace native;

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
    return ReadRegularFile(file, bytes);
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
