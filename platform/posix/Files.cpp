#include "platform/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/posix/DirectWrite.h"
#include "platform/posix/FileReading.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/Replacement.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using namespace native;

result::Code OpenToRead(std::u16string_view path, FileHandle& file)
{
    const std::optional<std::string> name = ToNativePath(path);
    if (!name) {
        return result::InvalidName;
    }
    file = OpenBelow(AT_FDCWD, name->c_str(), O_RDONLY);
    return file ? result::Success : CodeOfMissing(*name, errno);
}

result::Code Read(std::u16string_view path, std::string& bytes)
{
    FileHandle file;
    const result::Code code = OpenToRead(path, file);
    return code == result::Success ? ReadRegularFile(file, bytes) : code;
}

/// The current folder with a separator; empty when its name is unknown.
std::string CurrentFolder()
{
    std::string folder(256, '\0');
    while (::getcwd(folder.data(), folder.size()) == nullptr) {
        if (errno != ERANGE) {
            return {};
        }
        folder.resize(folder.size() * 2);
    }
    folder.resize(folder.find('\0'));
    return folder + '/';
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

result::Code CompareFile(std::u16string_view path, RepeatableBytes& expected) noexcept
{
    try {
        FileHandle file;
        const result::Code code = OpenToRead(path, file);
        return code == result::Success ? CompareRegularFile(file, expected) : code;
    } catch (...) {
        return result::OutOfMemory;
    }
}

std::u16string AbsolutePath(std::u16string_view path)
{
    std::u16string absolute(path);
    if (!path.empty() && path.front() != u'/') {
        absolute.insert(0, ToUtf16(CurrentFolder()).value_or(std::u16string()));
    }
    return absolute;
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
