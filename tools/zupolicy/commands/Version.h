/// What `zupolicy --version` prints.
#pragma once

#include <string>

namespace zupm::tool {

[[nodiscard]] std::string VersionOfProgram();

}  // namespace zupm::tool
