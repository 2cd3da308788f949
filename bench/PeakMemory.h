/// Peak memory of one load, measured in a process of its own.
#pragma once

#include <cstddef>
#include <string>

namespace zupm::bench {

/// Loads a file in this process: what a measured child does.
void LoadOnce(const std::string& contender, const std::string& path);

/// Peak resident bytes of a fresh process that loads the file and ends.
[[nodiscard]] std::size_t PeakBytesOfLoad(const std::string& contender, const std::string& path);

}  // namespace zupm::bench
