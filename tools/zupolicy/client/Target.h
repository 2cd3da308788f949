/// Which policy or task a command works on.
#pragma once

#include <optional>
#include <string>

namespace zupm::tool {

/// A product policy (software ID alone) or a task of that product (software ID and task ID); UTF-8.
struct Target {
    std::string softwareId;
    std::optional<std::string> taskId;
};

/// "policy PRODUCTA1000", or "task PRODUCTA1000 {task-1}", for messages.
[[nodiscard]] std::string Describe(const Target& target);

}  // namespace zupm::tool
