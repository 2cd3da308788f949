#include <windows.h>

#include <string>
#include <system_error>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/UnguessableName.h"

namespace zupm::tool {
namespace {

std::wstring UnguessableName()
{
    const std::wstring digits = UnguessableDigits();
    if (digits.empty()) {
        throw std::system_error(std::make_error_code(std::errc::io_error));
    }
    return L"zupolicy-" + digits;
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
