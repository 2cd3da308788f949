/// What the export of a task writes into an INI file before the task's settings.
#pragma once

#include <string_view>

namespace zupm::tool {

inline constexpr std::string_view kIniFieldSection = "Task";

/// The task's fields under their names in that section.
inline constexpr std::string_view kIniFields[] = {"TaskName", "Platforms",         "TaskPriority", "SoftwareName",
                                                  "TaskID",   "CreatorSoftwareID", "TaskType",     "TaskVersion"};

}  // namespace zupm::tool
