#include "tools/zupolicy/client/Files.h"

#include <string>

namespace zupm::tool {
namespace {

/// Whether a link is one of those that the system makes for open files.
bool IsInSystemFolder(const std::filesystem::path& link)
{
    std::error_code error;
    const std::u16string folder = std::filesystem::canonical(link.parent_path(), error).u16string() + u"/";
    return !error && (folder.starts_with(u"/proc/") || folder.starts_with(u"/dev/"));
}

}  // namespace

bool IsOrdinaryFile(std::filesystem::path path)
{
    std::error_code error;
    path = std::filesystem::absolute(path, error);
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return false;
    }
    constexpr int kLinksToFollow = 40;
    for (int link = 0; link < kLinksToFollow && std::filesystem::is_symlink(path, error); ++link) {
        if (IsInSystemFolder(path)) {
            return false;
        }
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    }
    return true;
}

}  // namespace zupm::tool
