/// Options that take no value.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zupm::tool {

/// The first flag of a command line that is given a value, as in "--json=false"; the parser would take it.
[[nodiscard]] std::optional<std::string> FindFlagWithValue(const CLI::App& line,
                                                           const std::vector<std::string>& arguments);

}  // namespace zupm::tool
