/// What `set` and `remove` did or would do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {

/// One edit of one policy or task. A new setting has no value before, a removed one none after.
struct Change {
    Target target;
    bool createsTarget = false;
    std::optional<std::string> section;
    std::optional<std::string> name;
    std::optional<std::string> before;
    std::optional<std::string> after;
    std::vector<FieldChange> fields;
    bool isAboutFields = false;  ///< no section or setting is meant
    bool changed = true;
    /// The file that was read.
    std::string file;
    /// The file that was written; nothing when none was.
    std::optional<std::string> written;
    /// The backup of the file that was replaced.
    std::optional<std::string> backup;
    /// What else to say about it, line by line.
    std::vector<std::string> notes;
    /// The difference of the texts, when it is wanted.
    std::optional<std::string> diff;
};

/// For a change of a task's fields alone there is no line about a setting.
///
/// One line such as `policy PRODUCTA1000: General/Enabled: "0" -> "1"`, and one for each field of a task that changes.
[[nodiscard]] std::string ChangeAsText(const Change& change, const Redaction& redaction);

/// The value of the setting before or after the change, or kHidden.
[[nodiscard]] std::optional<std::string> ShownValue(const Change& change, const std::optional<std::string>& value,
                                                    const Redaction& redaction);
/// The field with its values, or with kHidden in place of each.
[[nodiscard]] FieldChange Shown(FieldChange field, const Redaction& redaction);

}  // namespace zupm::tool
