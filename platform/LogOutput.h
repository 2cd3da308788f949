/// Where log lines go when the process set no sink.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm {

/// A variable of the process's environment as UTF-8; nothing when it is unset, or when the program runs with more
/// rights than its caller, whose environment must then not name files to write to.
[[nodiscard]] std::optional<std::string> TrustedEnvironmentVariable(const char* name);

/// Appends `line` to the file at a UTF-8 path in a single write, creating the file for its owner alone; an empty path
/// is standard error. The file is opened for this call only, so it may be moved away at any time and an unloaded module
/// leaves nothing open. A line that cannot be written is dropped.
void AppendLogLine(const char* path, std::string_view line) noexcept;

}  // namespace zupm
