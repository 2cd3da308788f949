/// Where a run keeps its files.
#pragma once

#include <string>

namespace zupm::bench {

/// A file in a folder of this run's own, which is removed at the end of the program.
[[nodiscard]] std::string ScratchFile(const std::string& name);

}  // namespace zupm::bench
