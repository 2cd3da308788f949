/// What can be typed next.
#pragma once

#include <string>
#include <vector>

namespace zupm::tool {

/// A whole argument.
struct Candidate {
    std::string text;
    std::string description;
};

struct Completion {
    std::vector<Candidate> candidates;
    bool files = false;  ///< the shell is to complete names of files
};

/// What the argument at the cursor can become. `words` are the arguments before it, `current` is its part before the
/// cursor. May read the policy file that the words name, and takes no lock. No candidate holds a character that could
/// disturb a terminal.
[[nodiscard]] Completion Complete(const std::vector<std::string>& words, const std::string& current);

}  // namespace zupm::tool
