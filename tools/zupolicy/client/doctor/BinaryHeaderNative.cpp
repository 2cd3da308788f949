#include <elf.h>

#include "tools/zupolicy/client/doctor/BinaryHeader.h"

namespace zupm::tool {

std::optional<BinaryHeader> ReadBinaryHeader(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    // Both classes of the format have the same fields up to the machine.
    const std::string header = ReadAt(file, 0, offsetof(Elf64_Ehdr, e_version));
    if (!std::string_view(header).starts_with(std::string_view(ELFMAG, SELFMAG))) {
        return std::nullopt;
    }
    return BinaryHeader{header[EI_CLASS] == ELFCLASS32 ? 32U : 64U, NumberAt(header, offsetof(Elf64_Ehdr, e_machine))};
}

bool IsWhole(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const auto header = StructureAt<Elf64_Ehdr>(file, 0);
    std::error_code failed;
    const std::uint64_t size = std::filesystem::file_size(path, failed);
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        const auto place = static_cast<std::streamoff>(header.e_phoff) + std::streamoff{i} * header.e_phentsize;
        const auto segment = StructureAt<Elf64_Phdr>(file, place);
        if (segment.p_type == PT_NULL || segment.p_filesz > size || segment.p_offset > size - segment.p_filesz) {
            return false;
        }
    }
    return !failed && header.e_phnum > 0;
}

}  // namespace zupm::tool
