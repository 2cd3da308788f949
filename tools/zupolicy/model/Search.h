/// Settings that match patterns.
#pragma once

#include <zuPolicyManager/Client.h>

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// Patterns as Matches takes them. With `taskId` only tasks are searched.
struct Patterns {
    std::string softwareId = "*";
    std::optional<std::string> taskId;
    std::string section = "*";
    std::string name = "*";
    std::string value = "*";
};

/// A setting that matches; the value is the stored one.
struct Match {
    EntryId id;
    std::string section;
    std::string name;
    std::string value;
};

/// The settings of a file that match all patterns: those of its policies in file order, then those of its tasks. Throws
/// Error.
[[nodiscard]] std::vector<Match> Search(const PolicyFile& file, const Patterns& patterns);

}  // namespace zupm::model
