#include "platform/native/NativePath.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>

#include "platform/common/Utf.h"
#include "platform/native/FileErrors.h"

namespace zupm::native {

namespace {

/// As many links in a row as the system itself follows.
constexpr int kMostLinks = 40;

}  // namespace

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

result::Code FollowLinks(std::string& path)
{
    for (int links = 0; links <= kMostLinks; ++links) {
        char target[PATH_MAX];
        const ssize_t length = Calls().readlink(path.c_str(), target, sizeof(target));
        if (length < 0) {
            // EINVAL says that the path is no link; what does not exist is about to be created.
            return errno == EINVAL || errno == ENOENT ? result::Success : LastError();
        }
        if (length == 0 || static_cast<std::size_t>(length) == sizeof(target)) {
            return result::NameTooLong;
        }
        const std::string_view link(target, static_cast<std::size_t>(length));
        path = link.front() == '/' ? std::string(link) : SplitPath(path).folder.append("/").append(link);
    }
    return CodeOfError(ELOOP);
}

result::Code OpenFolder(const std::string& path, FileHandle& folder) noexcept
{
    folder = OpenBelow(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY);
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
    const result::Code code = OpenFolder(SplitPath(path).folder, folder);
    return code == result::Success ? result::FileNotFound : code;
}

}  // namespace zupm::native
