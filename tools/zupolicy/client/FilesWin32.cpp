#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/Files.h"

namespace zupm::tool {
namespace {

std::wstring UnguessableName()
{
    std::array<unsigned char, 16> random{};
    if (BCryptGenRandom(nullptr, random.data(), static_cast<ULONG>(random.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) <
        0) {
        throw std::system_error(std::make_error_code(std::errc::io_error));
    }
    constexpr wchar_t kDigits[] = L"0123456789abcdef";
    std::wstring name = L"zupolicy-";
    for (const unsigned char byte : random) {
        name += kDigits[byte >> 4U];
        name += kDigits[byte & 15U];
    }
    return name;
}

}  // namespace

std::filesystem::path TemporaryFolder::Make()
{
    std::filesystem::path path = std::filesystem::temp_directory_path() / UnguessableName();
    // The folder above decides who may enter. A name that exists already is an error, so the folder is always new.
    if (CreateDirectoryW(path.c_str(), nullptr) == 0) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    return path;
}

struct ScratchFile::Held {
    TemporaryFolder folder;
};

ScratchFile::ScratchFile() : m_held(std::make_unique<Held>()), m_path(m_held->folder.Path() / L"file") {}

ScratchFile::~ScratchFile() = default;
ScratchFile::ScratchFile(ScratchFile&&) noexcept = default;

}  // namespace zupm::tool
