/// What `set` and `remove` did or would do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Target.h"

namespace zupm::tool {

/// A field of a task that gets another value; a new task has no value before.
struct FieldChange {
    std::string name;  ///< as `show --json` names it
    std::optional<std::string> before;
    std::string after;
};

/// One edit of one policy or task. A value that is missing means: there is none before (new) or after (removed).
struct Change {
    Target target;
    bool createsTarget = false;
    std::optional<std::string> section;
    std::optional<std::string> name;
    std::optional<std::string> before;
    std::optional<std::string> after;
    std::vector<FieldChange> fields;
    bool changed = true;
    /// The file that was written; nothing when none was.
    std::optional<std::string> written;
};

}  // namespace zupm::tool
