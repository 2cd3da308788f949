/// What `set` and `remove` did or would do.
#pragma once

#include <optional>
#include <string>

#include "model/Target.h"

namespace zupm::tool {

/// One edit of one policy or task. A value that is missing means: there is none before (new) or after (removed).
struct Change {
    Target target;
    bool createsTarget = false;
    std::optional<std::string> section;
    std::optional<std::string> name;
    std::optional<std::string> before;
    std::optional<std::string> after;
    bool changed = true;
    /// The file that was written; nothing when none was.
    std::optional<std::string> written;
};

}  // namespace zupm::tool
