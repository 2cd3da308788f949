/// What a task's export into an INI file loses.
#pragma once

#include <vector>

#include "model/FileContents.h"

namespace zupm::tool {

/// The settings that an INI file, which knows no case, takes for an earlier setting or for one of the task's fields: it
/// holds one of the two. In document order.
[[nodiscard]] std::vector<Duplicate> IniCollisions(const Task& task);

/// The same of several tasks.
[[nodiscard]] std::vector<Duplicate> IniCollisions(const std::vector<Task>& tasks);

}  // namespace zupm::tool
