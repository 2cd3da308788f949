/// What a dry run prints.
#pragma once

#include <string>

#include "tools/zupolicy/report/Change.h"

namespace zupm::tool {

/// One line such as `policy PRODUCTA1000: General/Enabled: "0" -> "1"`, and one for each field of a task that changes.
[[nodiscard]] std::string ChangeAsText(const Change& change);

}  // namespace zupm::tool
