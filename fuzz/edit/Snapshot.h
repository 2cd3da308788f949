/// What a policy file object returns for the known names.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/edit/Known.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// The settings of one product or task, by their names.
using Settings = std::map<NamePair, std::u16string>;

struct Snapshot {
    std::map<std::u16string, Settings> products;
    std::map<NamePair, Settings> tasks;
    std::vector<std::u16string> allTasks;
    std::optional<std::u16string> text;
    std::optional<std::u16string> assignmentList;
    /// Versions are written unsigned and read signed: a larger one reads as the largest signed number.
    std::int64_t policyVersion = 0;
    std::int64_t taskVersion = 0;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

/// Takes a snapshot and demands documented codes.
[[nodiscard]] Snapshot TakeSnapshot(const test::PolicyFileClient& file, const Known& known);

}  // namespace zupm::fuzz
