#include "output/ShowText.h"

#include <string_view>

#include "text/Utf8.h"

namespace zupm::tool {
namespace {

/// "label           value", or nothing for an empty value.
std::string Field(std::string_view indent, std::string_view label, const std::string& value)
{
    if (value.empty()) {
        return {};
    }
    constexpr std::size_t kLabelWidth = 17;
    std::string line(indent);
    line += label;
    line.append(label.size() < kLabelWidth ? kLabelWidth - label.size() : 1, ' ');
    return line + ForTerminal(value) + "\n";
}

std::string SectionsText(const std::vector<Section>& sections)
{
    std::string text;
    for (const Section& section : sections) {
        text += "  [" + ForTerminal(section.name) + "]\n";
        for (const Setting& setting : section.settings) {
            text += "    " + ForTerminal(setting.name) + " = " + ForTerminal(setting.value) + "\n";
        }
    }
    return text;
}

std::string PolicyText(const Policy& policy)
{
    return "\nPolicy " + ForTerminal(policy.softwareId) + "\n" + Field("  ", "Version", policy.version) +
           SectionsText(policy.sections);
}

std::string TaskText(const Task& task)
{
    return "\nTask " + ForTerminal(task.softwareId) + " " + ForTerminal(task.taskId) + "\n" +
           Field("  ", "Name", task.displayName) + Field("  ", "Type", task.type) +
           Field("  ", "Platforms", task.platforms) + Field("  ", "Priority", task.priority) +
           Field("  ", "Creator", task.creator) + Field("  ", "Version", task.version) + SectionsText(task.sections);
}

}  // namespace

std::string ContentsAsText(const std::string& file, const FileContents& contents)
{
    std::string text = Field("", "File", file) + Field("", "Policy version", contents.policyVersion) +
                       Field("", "Task version", contents.taskVersion) +
                       Field("", "Assignment list", contents.assignmentList);
    for (const Policy& policy : contents.policies) {
        text += PolicyText(policy);
    }
    for (const Task& task : contents.tasks) {
        text += TaskText(task);
    }
    return text;
}

}  // namespace zupm::tool
