/// Everything that a policy file means, kept in memory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// One state of a file: what `diff` compares, without the versions.
struct FileState {
    std::string assignmentList;
    std::vector<EntryId> ids;  ///< in the order of the file
    std::map<EntryId, Entry> entries;

    /// The entry without what repeats its fields, or null.
    [[nodiscard]] const Entry* Find(const EntryId& id) const
    {
        const auto found = entries.find(id);
        return found == entries.end() ? nullptr : &found->second;
    }
};

/// Reads a file as OpenToRead does.
[[nodiscard]] FileState ReadState(const std::string& path);

}  // namespace zupm::model
