#include "bench/driver/ScratchFolder.h"

#include <unistd.h>

#include <filesystem>

namespace zupm::bench {

namespace {

class Folder {
public:
    Folder() : m_path(std::filesystem::temp_directory_path() / ("zupm-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] std::string File(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

}  // namespace

std::string ScratchFile(const std::string& name)
{
    static const Folder folder;
    return folder.File(name);
}

}  // namespace zupm::bench
