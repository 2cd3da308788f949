/// Names from the policy file that a command line is about.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/commands/help/Complete.h"

namespace zupm::tool {

/// Which names are sought.
enum class NameKind : std::uint8_t { SoftwareId, TaskId, Section, Setting };

/// What the line has so far. An empty ID or section is any.
struct NamePlace {
    std::string file;
    std::string softwareId;
    std::string taskId;
    std::string section;
    bool hasPolicies = true;  ///< policies are searched
    bool hasTasks = true;     ///< tasks are searched
};

/// The names in the file that begin with `start`, in the order of the file. None when the file cannot be read, is
/// large, or has more names than anybody reads. A file that is broken further on may have some.
[[nodiscard]] std::vector<Candidate> NamesIn(const NamePlace& place, NameKind kind, std::string_view start);

}  // namespace zupm::tool
