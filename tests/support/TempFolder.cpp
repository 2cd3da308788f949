#include "tests/support/TempFolder.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace zupm::test {

namespace fs = std::filesystem;

TempFolder::TempFolder()
{
    std::random_device random;
    do {
        m_folder = fs::temp_directory_path() / ("zupm-test-" + std::to_string(random()));
    } while (!fs::create_directory(m_folder));
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::u16string TempFolder::Path(std::u16string_view name) const
{
    return (m_folder / fs::path(name)).u16string();
}

std::u16string TempFolder::Write(std::u16string_view name, std::string_view bytes) const
{
    const std::u16string path = Path(name);
    WriteBytes(path, bytes);
    return path;
}

std::string TempFolder::Read(std::u16string_view name) const
{
    return ReadBytes(Path(name));
}

bool TempFolder::Has(std::u16string_view name) const
{
    return fs::exists(fs::symlink_status(Path(name)));
}

std::vector<std::string> TempFolder::Names() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
        const std::u8string name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void WriteBytes(std::u16string_view path, std::string_view bytes)
{
    std::ofstream file(fs::path(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + fs::path(path).string());
    }
}

std::string ReadBytes(std::u16string_view path)
{
    std::ifstream file(fs::path(path), std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + fs::path(path).string());
    }
    std::ostringstream bytes;
    if (file.peek() != std::ifstream::traits_type::eof()) {
        bytes << file.rdbuf();
    }
    return std::move(bytes).str();
}

}  // namespace zupm::test
