#include "xml/ContentsBuilder.h"

#include "text/Utf8.h"

namespace zupm::tool {

void ContentsBuilder::Open(std::string_view name, const Attributes& attributes, Position position)
{
    m_stack.push_back(PlaceOf(name, attributes, position));
}

void ContentsBuilder::Close()
{
    m_stack.pop_back();
}

void ContentsBuilder::Text(std::string_view text)
{
    // Only text directly inside a setting is part of its value.
    if (!m_stack.empty() && m_stack.back() == Place::Setting) {
        (*m_sections)[m_section].settings.back().value += text;
    }
}

ContentsBuilder::Place ContentsBuilder::PlaceOf(std::string_view name, const Attributes& attributes, Position position)
{
    if (m_stack.empty()) {
        return Place::Root;
    }
    switch (m_stack.back()) {
        case Place::Root:
            return name == "PolicyRoot" ? Place::PolicyRoot : name == "TaskRoot" ? Place::TaskRoot : Place::Other;
        case Place::PolicyRoot:
            return name == "PolicyGroup" ? Place::PolicyGroup : Place::Other;
        case Place::PolicyGroup:
            return name == "Policy" ? OpenPolicy(attributes) : Place::Other;
        case Place::Policy:
            return OpenProduct(name, attributes, position);
        case Place::TaskRoot:
            return name == "TaskGroup" ? OpenTaskGroup(attributes) : Place::Other;
        case Place::TaskGroup:
            return name == "Task" ? OpenTask(attributes, position) : Place::Other;
        case Place::Entry:
            return OpenSection(attributes, position);
        case Place::Section:
            return OpenSetting(attributes, position);
        default:
            return Place::Other;
    }
}

ContentsBuilder::Place ContentsBuilder::OpenPolicy(const Attributes& attributes)
{
    m_policyVersion = attributes.Get("PolicyVersion");
    return Place::Policy;
}

ContentsBuilder::Place ContentsBuilder::OpenProduct(std::string_view name, const Attributes& attributes,
                                                    Position position)
{
    const char* softwareId = attributes.Find("SoftwareID");
    if (name != "Product" || softwareId == nullptr) {
        return Place::Other;
    }
    if (!m_softwareIds.insert(softwareId).second) {
        Report(position, "policy " + ForTerminal(softwareId) + " occurs again; only the first is used");
        return Place::Other;
    }
    m_contents.policies.push_back({softwareId, m_policyVersion, {}});
    StartEntry(m_contents.policies.back().sections);
    return Place::Entry;
}

ContentsBuilder::Place ContentsBuilder::OpenTaskGroup(const Attributes& attributes)
{
    if (attributes.Find("SoftwareID") == nullptr || attributes.Find("TaskID") == nullptr) {
        return Place::Other;
    }
    m_group = {attributes.Get("SoftwareID"),
               attributes.Get("TaskID"),
               attributes.Get("DisplayName"),
               attributes.Get("TaskType"),
               attributes.Get("Platforms"),
               attributes.Get("CreatorID"),
               attributes.Get("TaskPriority"),
               {},
               {}};
    return Place::TaskGroup;
}

ContentsBuilder::Place ContentsBuilder::OpenTask(const Attributes& attributes, Position position)
{
    if (!m_taskIds.emplace(m_group.softwareId, m_group.taskId).second) {
        Report(position, "task " + ForTerminal(m_group.softwareId) + " " + ForTerminal(m_group.taskId) +
                             " occurs again; only the first is used");
        return Place::Other;
    }
    m_contents.tasks.push_back(m_group);
    m_contents.tasks.back().version = attributes.Get("TaskVersion");
    StartEntry(m_contents.tasks.back().sections);
    return Place::Entry;
}

ContentsBuilder::Place ContentsBuilder::OpenSection(const Attributes& attributes, Position position)
{
    const char* name = attributes.Find("name");
    if (name == nullptr) {
        return Place::Other;
    }
    const auto [known, isNew] = m_sectionNumbers.emplace(name, m_sections->size());
    m_section = known->second;
    if (isNew) {
        m_sections->push_back({name, {}});
        m_settingNames.emplace_back();
    } else {
        Report(position, "section " + ForTerminal(name) + " occurs again; both are read as one");
    }
    return Place::Section;
}

ContentsBuilder::Place ContentsBuilder::OpenSetting(const Attributes& attributes, Position position)
{
    const char* name = attributes.Find("name");
    if (name == nullptr) {
        return Place::Other;
    }
    Section& section = (*m_sections)[m_section];
    if (!m_settingNames[m_section].insert(name).second) {
        Report(position, "setting " + ForTerminal(name) + " of section " + ForTerminal(section.name) +
                             " occurs again; only the first is used");
        return Place::Other;
    }
    section.settings.push_back({name, {}, position.line, position.column});
    return Place::Setting;
}

void ContentsBuilder::StartEntry(std::vector<Section>& sections)
{
    m_sections = &sections;
    m_sectionNumbers.clear();
    m_settingNames.clear();
}

void ContentsBuilder::Report(Position position, std::string message)
{
    m_contents.duplicates.push_back({position.line, position.column, std::move(message)});
}

}  // namespace zupm::tool
