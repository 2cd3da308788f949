/// What a policy file object says about everything known.
#pragma once

#include <compare>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/edit/Known.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::fuzz {

/// The settings of one product or task that has some, by their names.
using Settings = std::map<NamePair, std::u16string>;

struct Snapshot {
    std::map<std::u16string, Settings> products;
    std::map<NamePair, Settings> tasks;
    std::vector<std::u16string> allTasks;
    std::optional<std::u16string> text;
    std::optional<std::u16string> assignmentList;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
};

/// Demands documented codes on the way.
[[nodiscard]] Snapshot TakeSnapshot(const test::PolicyFileClient& file, const Known& known);

}  // namespace zupm::fuzz
