/// Which policy or task a command works on, and the fields of a task.
#pragma once

#include <cstdint>
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

/// The identity fields of a task that a command line names. The others stay as they are; texts are UTF-8.
struct TaskFields {
    std::optional<std::string> displayName;
    std::optional<std::string> type;
    std::optional<std::string> platforms;
    std::optional<std::string> creator;
    std::optional<std::int32_t> priority;
};

/// A field of a task that gets another value; a new task has no value before.
struct FieldChange {
    std::string name;  ///< as `show --json` names it
    std::optional<std::string> before;
    std::string after;
};

}  // namespace zupm::tool
