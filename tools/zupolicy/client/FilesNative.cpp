#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/Files.h"

namespace zupm::tool {

std::filesystem::path TemporaryFolder::Make()
{
    std::string name = (std::filesystem::temp_directory_path() / "zupolicy-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::system_category());
    }
    return name;
}

/// The open file. Its name is gone, and the system has another one for it.
struct ScratchFile::Held {
    explicit Held(const std::filesystem::path& path)
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's own
        : number(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600))
    {
        if (number < 0) {
            throw std::system_error(errno, std::system_category());
        }
    }
    ~Held() { close(number); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    int number;
};

ScratchFile::ScratchFile()
    : m_held(std::make_unique<Held>(TemporaryFolder().Path() / "file")),
      m_path("/proc/self/fd/" + std::to_string(m_held->number))
{
}

ScratchFile::~ScratchFile() = default;
ScratchFile::ScratchFile(ScratchFile&&) noexcept = default;

}  // namespace zupm::tool
