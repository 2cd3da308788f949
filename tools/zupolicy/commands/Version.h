/// What `zupolicy --version` prints, as text and with --json.
#pragma once

#include <string>

namespace zupm::tool {

[[nodiscard]] std::string VersionOfProgram();
[[nodiscard]] std::string VersionAsJson();

}  // namespace zupm::tool
