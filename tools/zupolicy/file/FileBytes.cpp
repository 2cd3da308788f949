#include "file/FileBytes.h"

#include <fstream>
#include <sstream>

namespace zupm::tool {

std::optional<std::string> BytesOf(const std::filesystem::path& path)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    for (std::size_t read = kPiece; file && read == kPiece;) {
        const std::size_t filled = bytes.size();
        bytes.resize(filled + kPiece);
        file.read(bytes.data() + filled, kPiece);
        read = static_cast<std::size_t>(file.gcount());
        bytes.resize(filled + read);
    }
    return file.bad() || !file.is_open() ? std::nullopt : std::optional(std::move(bytes));
}

}  // namespace zupm::tool
