#include "tools/zupolicy/client/CopyFile.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <ostream>
#include <system_error>

namespace zupm::tool {

void CopyFile(const std::filesystem::path& path, std::ostream& out)
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
