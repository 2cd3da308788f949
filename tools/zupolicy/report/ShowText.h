/// What `show` prints for people.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/report/Selection.h"

namespace zupm::tool {

void WriteContentsAsText(std::ostream& out, const std::string& file, const FileContents& contents,
                         const Selection& selection);

}  // namespace zupm::tool
