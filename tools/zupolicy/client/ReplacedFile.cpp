#include "tools/zupolicy/client/ReplacedFile.h"

#include <random>
#include <string_view>
#include <system_error>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

std::filesystem::path RandomName()
{
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz012345";
    constexpr int kLength = 16;
    std::random_device random;
    std::string name = ".zupolicy-";
    for (int i = 0; i < kLength; ++i) {
        name += kLetters[random() % kLetters.size()];
    }
    return name;
}

/// A new folder, which nobody else can have made.
std::filesystem::path MakeFolderIn(const std::filesystem::path& parent)
{
    std::filesystem::path folder;
    do {
        folder = parent / RandomName();
    } while (!std::filesystem::create_directory(folder));
    return folder;
}

}  // namespace

ReplacedFile::ReplacedFile(const std::string& path) : m_name(path), m_path(FromUtf8(path))
{
    if (!IsOrdinaryFile(m_path)) {
        throw FileFailure(ExitCode::FileError, m_name, "it is not a regular file");
    }
    try {
        m_path = std::filesystem::weakly_canonical(std::filesystem::absolute(m_path));
        m_folder = MakeFolderIn(m_path.parent_path());
    } catch (const std::filesystem::filesystem_error& error) {
        throw FileFailure(ExitCode::FileError, m_name, error.code().message());
    }
    m_file = m_folder / "new";
    m_stream.open(m_file, std::ios::binary | std::ios::trunc);
}

ReplacedFile::~ReplacedFile()
{
    m_stream.close();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

void ReplacedFile::Commit()
{
    m_stream.close();
    if (!m_stream) {
        throw FileFailure(ExitCode::FileError, m_name, "it cannot be written");
    }
    try {
        if (std::filesystem::exists(m_path)) {
            std::filesystem::permissions(m_file, std::filesystem::status(m_path).permissions());
        }
        std::filesystem::rename(m_file, m_path);
    } catch (const std::filesystem::filesystem_error& error) {
        throw FileFailure(ExitCode::FileError, m_name, error.code().message());
    }
}

}  // namespace zupm::tool
