#include <windows.h>

#include "tools/zupolicy/client/doctor/BinaryHeader.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kDosSignature = "MZ";
constexpr std::string_view kSignature{"PE\0\0", 4};

std::streamoff PlaceOfHeader(std::ifstream& file)
{
    return StructureAt<IMAGE_DOS_HEADER>(file, 0).e_lfanew;
}

}  // namespace

std::optional<BinaryHeader> ReadBinaryHeader(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string dos = ReadAt(file, 0, sizeof(IMAGE_DOS_HEADER));
    if (!std::string_view(dos).starts_with(kDosSignature)) {
        return std::nullopt;
    }
    const std::streamoff place = PlaceOfHeader(file);
    const std::string header = ReadAt(file, place, kSignature.size() + sizeof(WORD));
    if (!std::string_view(header).starts_with(kSignature)) {
        return std::nullopt;
    }
    const std::uint16_t machine = NumberAt(header, kSignature.size());
    const bool is64 = machine == IMAGE_FILE_MACHINE_AMD64 || machine == IMAGE_FILE_MACHINE_ARM64;
    return BinaryHeader{is64 ? 64U : 32U, machine};
}

bool IsWhole(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::streamoff place = PlaceOfHeader(file);
    const auto header = StructureAt<IMAGE_NT_HEADERS64>(file, place);
    constexpr auto kFixedPart = static_cast<std::streamoff>(offsetof(IMAGE_NT_HEADERS64, OptionalHeader));
    const std::streamoff sections = place + kFixedPart + header.FileHeader.SizeOfOptionalHeader;
    std::error_code failed;
    const std::uint64_t size = std::filesystem::file_size(path, failed);
    for (unsigned i = 0; i < header.FileHeader.NumberOfSections; ++i) {
        const auto section = StructureAt<IMAGE_SECTION_HEADER>(
            file, sections + static_cast<std::streamoff>(i * sizeof(IMAGE_SECTION_HEADER)));
        if (section.Name[0] == 0 || std::uint64_t{section.PointerToRawData} + section.SizeOfRawData > size) {
            return false;
        }
    }
    return !failed && header.FileHeader.NumberOfSections > 0;
}

}  // namespace zupm::tool
