#include "platform/Files.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "platform/posix/DirectWrite.h"
#include "platform/posix/FileReading.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/Replacement.h"

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

result::Code Replace(std::u16string_view path, ByteSource& bytes, Durability durability)
{
    const std::optional<std::string> target = ToNativePath(path);
    if (!target) {
        return result::InvalidName;
    }
    // The system opens it first: some links, such as those of open files, lead to no name at all.
    if (FileHandle special = OpenSpecialFile(*target)) {
        return WriteSpecialFile(std::move(special), bytes);
    }
    FilePlace place;
    result::Code code = OpenPlace(*target, O_WRONLY, place);
    if (code == result::Success) {
        code = Replacement(place, bytes, durability).Run({});
    }
    // A caller who names the file by its path gets the system's code alone.
    return code == result::OwnerNotKept ? result::AccessDenied : code;
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
        // Only memory that runs out throws here.
        return result::OutOfMemory;
    }
}

result::Code ReplaceFileAtomically(std::u16string_view path, ByteSource& bytes, Durability durability) noexcept
{
    try {
        return Replace(path, bytes, durability);
    } catch (...) {
        return result::OutOfMemory;
    }
}

}  // namespace zupm
