/// What `show` prints for people.
#pragma once

#include <string>

#include "model/FileContents.h"

namespace zupm::tool {

[[nodiscard]] std::string ContentsAsText(const std::string& file, const FileContents& contents);

}  // namespace zupm::tool
