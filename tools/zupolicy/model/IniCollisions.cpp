#include "model/IniCollisions.h"

#include <iterator>
#include <map>
#include <string_view>
#include <utility>

#include "text/IniName.h"
#include "text/Utf8.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kFieldSection = "Task";
constexpr std::string_view kFields[] = {"TaskName", "Platforms",         "TaskPriority", "SoftwareName",
                                        "TaskID",   "CreatorSoftwareID", "TaskType",     "TaskVersion"};

/// What an INI file knows a setting by, and how a message calls the one that came first.
using Names = std::map<std::pair<std::string, std::string>, std::string>;

std::string NameOf(const Setting& setting, const Section& section)
{
    return "setting " + ForTerminal(setting.name) + " of section " + ForTerminal(section.name);
}

Names FieldNames()
{
    Names names;
    for (const std::string_view field : kFields) {
        names.emplace(std::pair(IniName(kFieldSection), IniName(field)), "the task's field " + std::string(field));
    }
    return names;
}

}  // namespace

std::vector<Duplicate> IniCollisions(const Task& task)
{
    std::vector<Duplicate> collisions;
    Names names = FieldNames();
    for (const Section& section : task.sections) {
        const std::string sectionName = IniName(section.name);
        for (const Setting& setting : section.settings) {
            const std::string subject = NameOf(setting, section);
            const auto [first, isNew] = names.emplace(std::pair(sectionName, IniName(setting.name)), subject);
            if (!isNew) {
                collisions.push_back(
                    {setting.line, setting.column,
                     subject + " and " + first->second + " are one in an INI file; it holds one of them"});
            }
        }
    }
    return collisions;
}

std::vector<Duplicate> IniCollisions(const std::vector<Task>& tasks)
{
    std::vector<Duplicate> all;
    for (const Task& task : tasks) {
        std::vector<Duplicate> collisions = IniCollisions(task);
        std::move(collisions.begin(), collisions.end(), std::back_inserter(all));
    }
    return all;
}

}  // namespace zupm::tool
