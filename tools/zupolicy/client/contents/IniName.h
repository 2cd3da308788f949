/// Names in INI files.
#pragma once

#include <string>
#include <string_view>

namespace zupm::tool {

/// The form that is the same for all names that an INI file takes for one: without blanks at its ends, and in capitals
/// (Windows: every letter; natively A to Z, as the component writes INI files there).
[[nodiscard]] std::string IniName(std::string_view utf8);

/// A name without the blanks at its ends, those that INI files know.
[[nodiscard]] inline std::string_view WithoutIniBlanks(std::string_view name)
{
    constexpr std::string_view kBlanks = "\t\n\v\f\r\x1A ";
    const std::size_t first = name.find_first_not_of(kBlanks);
    return first == name.npos ? std::string_view() : name.substr(first, name.find_last_not_of(kBlanks) - first + 1);
}

/// The section that the export of a task writes before the task's settings.
inline constexpr std::string_view kIniFieldSection = "Task";

/// The task's fields under their names in that section.
inline constexpr std::string_view kIniFields[] = {"TaskName", "Platforms",         "TaskPriority", "SoftwareName",
                                                  "TaskID",   "CreatorSoftwareID", "TaskType",     "TaskVersion"};

}  // namespace zupm::tool
