/// What a warning says.
#pragma once

#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

[[nodiscard]] std::string WarningText(const FileContents& contents, const Warning& warning);

}  // namespace zupm::tool
