/// Edits of tests/data/agent.xml, each with the difference that it makes to the whole file.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

/// A piece of the file, and what replaces it.
struct Change {
    std::string from;
    std::string to;
};

struct EditCase {
    std::string label;
    std::function<void(PolicyFileClient&)> edit;  ///< throws when a step fails
    std::vector<Change> difference;
};

/// For gtest messages.
void PrintTo(const EditCase& edit, std::ostream* out);

[[nodiscard]] const std::vector<EditCase>& EditCases();

}  // namespace zupm::test
