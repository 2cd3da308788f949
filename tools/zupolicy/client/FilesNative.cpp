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

}  // namespace zupm::tool
