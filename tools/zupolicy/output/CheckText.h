/// What `check` says to people and editors.
#pragma once

#include <string>
#include <vector>

#include "model/CheckReport.h"

namespace zupm::tool {

/// "file:line:column: message" for a broken file, one "file:line:column: warning: message" for each duplicate of a
/// sound one; nothing else for a sound file.
[[nodiscard]] std::string ReportAsText(const CheckReport& report);

/// One "file:line:column: warning: message" for each.
[[nodiscard]] std::string WarningsAsText(const std::string& file, const std::vector<Duplicate>& warnings);

/// "file: ok: 3 policies, ...".
[[nodiscard]] std::string CountsAsText(const CheckReport& report);

}  // namespace zupm::tool
