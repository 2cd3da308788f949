#include "platform/posix/FilePlace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/posix/FileErrors.h"
#include "platform/posix/NativePath.h"
#include "platform/posix/TargetFiles.h"

namespace zupm::native {

namespace {

/// The number of links in a row that the system itself follows.
constexpr int kMostLinks = 40;

/// The system's rule for links that lie where everybody may put one.
bool MayFollow(const struct stat& folder, const struct stat& link) noexcept
{
    constexpr mode_t kEverybodysButProtected = S_ISVTX | S_IWOTH;
    const bool isOpenToAll = (folder.st_mode & kEverybodysButProtected) == kEverybodysButProtected;
    return !isOpenToAll || link.st_uid == ::geteuid() || link.st_uid == folder.st_uid;
}

/// Reads where the link `name` leads. A name that is no link any more leads to itself.
result::Code ReadLink(const FileHandle& folder, const std::string& name, std::string& target)
{
    const FileHandle link = OpenLink(folder.Get(), name.c_str());
    struct stat linkStatus {};
    struct stat folderStatus {};
    if (!link || Calls().fstat(link.Get(), &linkStatus) != 0 || Calls().fstat(folder.Get(), &folderStatus) != 0) {
        return LastError();
    }
    if (!S_ISLNK(linkStatus.st_mode)) {
        target = name;
        return result::Success;
    }
    if (!MayFollow(folderStatus, linkStatus)) {
        return result::AccessDenied;
    }
    return ReadOpenLink(link, target);
}

}  // namespace

result::Code OpenPlace(const std::string& path, int flags, FilePlace& place)
{
    std::string rest = path;
    for (int links = 0; links <= kMostLinks; ++links) {
        // The first step starts at the current folder, every other one in the folder of the link.
        const int start = place.folder ? place.folder.Get() : AT_FDCWD;
        FolderAndName parts = SplitPath(rest);
        FileHandle folder;
        if (const result::Code code = OpenFolder(start, parts.folder, folder); code != result::Success) {
            return code;
        }
        place.folder = std::move(folder);
        place.name = std::move(parts.name);
        if (place.name.empty()) {
            return result::AccessDenied;
        }
        place.file = OpenBelow(place.folder.Get(), place.name.c_str(), flags | O_NOFOLLOW);
        if (place.file || errno == ENOENT) {
            return result::Success;
        }
        if (errno != ELOOP) {
            return LastError();
        }
        if (const result::Code code = ReadLink(place.folder, place.name, rest); code != result::Success) {
            return code;
        }
    }
    return CodeOfError(ELOOP);
}

result::Code CheckSameFile(const FilePlace& place) noexcept
{
    struct stat opened {};
    struct stat named {};
    if (Calls().fstat(place.file.Get(), &opened) != 0) {
        return LastError();
    }
    if (Calls().fstatat(place.folder.Get(), place.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? result::FileChanged : LastError();
    }
    const bool isSame = opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
    return isSame ? result::Success : result::FileChanged;
}

}  // namespace zupm::native
