/// What differs between two states of a policy or task, as steps from the one to the other.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// A setting has another value, or exists on one side only.
struct SettingChange {
    std::string section;
    std::string name;
    std::optional<std::string> before;
    std::optional<std::string> after;
};

/// A section exists on one side only. One that is added is empty: its settings are changes of their own. One that is
/// removed goes with its settings.
struct SectionChange {
    std::string section;
    bool isAdded;
    std::size_t settings;  ///< that the removed section has
};

struct FieldChange {
    Field field;
    std::string before;
    std::string after;
};

/// From one state of an entry to the next. One that exists in both has changes of fields, sections and settings; in the
/// order fields, then sections with their settings as the old state has them, then what only the new one has.
struct EntryChange {
    enum class Kind { Added, Removed, Changed };

    Kind kind;
    EntryId id;
    const Entry* entry;  ///< the one that is added or removed; null for a change
    std::vector<FieldChange> fields;
    struct Step {
        std::optional<SettingChange> setting;
        std::optional<SectionChange> section;
    };
    std::vector<Step> steps;

    [[nodiscard]] bool IsEmpty() const { return kind == Kind::Changed && fields.empty() && steps.empty(); }
};

/// Null stands for an entry that does not exist; at least one exists. The result refers to the entries. What repeats a
/// field of a task is no difference; DropRepeated must have taken it out of both.
[[nodiscard]] EntryChange Compare(const Entry* before, const Entry* after);

}  // namespace zupm::model
