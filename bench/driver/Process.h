/// Other programs, as whole processes.
#pragma once

#include <string>
#include <vector>

namespace zupm::bench {

using Command = std::vector<std::string>;

struct Finished {
    double seconds = 0;  ///< from before its start until it has ended
    std::string output;
};

/// Runs a program and waits for it; the loader looks for libraries in `libraryFolder` first, if it is not empty. Ends
/// this program when the other one fails.
[[nodiscard]] Finished RunProcess(const Command& command, const std::string& libraryFolder = {});

}  // namespace zupm::bench
