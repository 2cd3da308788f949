#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include "tools/zupolicy/client/TemporaryFolder.h"

namespace zupm::tool {

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "zupolicy-XXXXXX").string();
    // Only the user may enter the folder.
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::system_category());
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace zupm::tool
