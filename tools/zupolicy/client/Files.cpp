#include "tools/zupolicy/client/Files.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <ostream>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/Utf8.h"

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

bool AreSameFile(const std::string& one, const std::string& other)
{
    std::error_code ignored;
    return IsUtf8(one) && IsUtf8(other) &&
           std::filesystem::equivalent(std::filesystem::path(FromUtf8(one)), std::filesystem::path(FromUtf8(other)),
                                       ignored);
}

TemporaryFolder::TemporaryFolder() : m_path(Make()) {}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void WriteFileTo(std::ostream& out, const std::filesystem::path& path)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10;
    std::array<char, kPiece> piece{};
    std::ifstream file(path, std::ios::binary);
    while (file && out) {
        file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        out.write(piece.data(), file.gcount());
    }
    if (out && !file.eof()) {
        throw std::system_error(std::make_error_code(std::errc::io_error));
    }
}

}  // namespace zupm::tool
