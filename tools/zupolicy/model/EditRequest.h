/// What a client wants to be true about a policy file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// Where an edit is written: line and column of the edits file, from 1. A column counts characters.
struct EditPlace {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// One edit: a state that the file has afterwards.
struct EditRequest {
    enum class Kind {
        Setting,         ///< the setting has the value
        Section,         ///< the section exists
        TaskFields,      ///< the task's fields have the values
        WithoutSetting,  ///< the setting does not exist
        WithoutSection,
        WithoutEntry,
        Entry,       ///< the policy or task exists, with at least this content
        ExactEntry,  ///< it exists with this content and no more
        OwnEntry,    ///< as ExactEntry, and an edit of one that exists with other content is refused
    };

    Kind kind = Kind::Setting;
    EntryId id;
    std::string section;
    std::string name;
    std::string value;
    std::array<std::optional<std::string>, kFieldNames.size()> fields;
    Named<Section> sections;
    EditPlace place;
};

/// Why an edit cannot be made in a file.
struct Refusal {
    enum class Reason {
        NoSuchEntry,  ///< it works on a policy or task that the file does not have
        Exists,       ///< the policy or task exists with other content
        Repeats,      ///< the setting repeats a field of the task, and the component will write the field there
    };
    Reason reason;
    std::string section;
    std::string name;
};

/// Makes an edit in a state of the entry that it is about; nothing stands for an entry that does not exist. Returns
/// whether it made a difference. What repeats a field of a task is no part of the state (DropRepeated). Throws Refusal;
/// the state is of no use then.
[[nodiscard]] bool Make(const EditRequest& edit, std::optional<Entry>& state);

}  // namespace zupm::model
