#include "platform/posix/NativePath.h"

#include <fcntl.h>

#include <cerrno>

#include "platform/posix/FileErrors.h"
#include "platform/posix/TargetFiles.h"
#include "text/Utf.h"

namespace zupm::native {

FileHandle OpenBelow(int folder, const char* path, int flags, mode_t mode) noexcept
{
    constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return FileHandle(Retry([&] { return Calls().openat(folder, path, flags | kAlways, mode); }));
}

std::optional<std::string> ToNativePath(std::u16string_view path)
{
    if (path.empty() || path.find(u'\0') != path.npos) {
        return std::nullopt;
    }
    return ToUtf8(path);
}

FolderAndName SplitPath(std::string_view path)
{
    const std::size_t separator = path.rfind('/');
    if (separator == path.npos) {
        return {".", std::string(path)};
    }
    // The root keeps its separator: without it nothing would be left.
    return {std::string(path.substr(0, separator == 0 ? 1 : separator)), std::string(path.substr(separator + 1))};
}

result::Code OpenFolder(int start, const std::string& path, FileHandle& folder) noexcept
{
    folder = OpenToSearch(start, path.c_str());
    if (folder) {
        return result::Success;
    }
    return errno == ENOENT ? result::PathNotFound : LastError();
}

result::Code CodeOfMissing(const std::string& path, int error)
{
    if (error != ENOENT) {
        return CodeOfError(error);
    }
    FileHandle folder;
    const result::Code code = OpenFolder(AT_FDCWD, SplitPath(path).folder, folder);
    return code == result::Success ? result::FileNotFound : code;
}

}  // namespace zupm::native
