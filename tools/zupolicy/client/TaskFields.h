/// A task's identity fields, as far as a command line gives them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zupm::tool {

/// Fields without a value stay as they are. Texts are UTF-8.
struct TaskFields {
    std::optional<std::string> displayName;
    std::optional<std::string> type;
    std::optional<std::string> platforms;
    std::optional<std::string> creator;
    std::optional<std::int32_t> priority;

    friend bool operator==(const TaskFields&, const TaskFields&) = default;
};

}  // namespace zupm::tool
