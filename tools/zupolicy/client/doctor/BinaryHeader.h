/// The first bytes of programs and libraries: for which processor they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace zupm::tool {

/// What a program or library was built for.
struct BinaryHeader {
    unsigned bits = 0;
    std::uint16_t machine = 0;  ///< as the format numbers it

    friend bool operator==(const BinaryHeader&, const BinaryHeader&) = default;
};

/// Reads the header of a file in the format of this target (ELF, or PE on Windows). Nothing when the file cannot be
/// read or has another format.
[[nodiscard]] std::optional<BinaryHeader> ReadBinaryHeader(const std::filesystem::path& path);

/// False when the file is shorter than its header says: natively a process that loads such a file may crash. The file
/// has the format and word size of this target.
[[nodiscard]] bool IsWhole(const std::filesystem::path& path);

/// The bytes of a file from an offset on; empty when it has fewer.
[[nodiscard]] inline std::string ReadAt(std::ifstream& file, std::streamoff offset, std::size_t size)
{
    std::string bytes(size, '\0');
    file.seekg(offset);
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    return file ? bytes : std::string();
}

/// A structure of the file, from an offset on; all zeros when the file is too short.
template <class Structure>
[[nodiscard]] Structure StructureAt(std::ifstream& file, std::streamoff offset)
{
    Structure structure{};
    if (const std::string bytes = ReadAt(file, offset, sizeof structure); !bytes.empty()) {
        std::memcpy(&structure, bytes.data(), sizeof structure);
    }
    return structure;
}

/// An unsigned number of two bytes, the low one first; both are inside the text.
[[nodiscard]] inline std::uint16_t NumberAt(std::string_view bytes, std::size_t at)
{
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<std::uint16_t>(low | (high << 8));
}

}  // namespace zupm::tool
