#include "tools/zupolicy/client/contents/ContentsBuilder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

template <typename Records>
std::uint32_t SizeOf(const Records& records)
{
    return static_cast<std::uint32_t>(records.size());
}

}  // namespace

ContentsBuilder::ContentsBuilder(std::string_view document) : m_document(document)
{
    // Decoded, no text gets longer; so this room is never outgrown, and what is not used of it costs nothing.
    m_contents.texts.reserve(document.size() + 1024);
    m_contents.texts = ' ';
}

void ContentsBuilder::Add(const Markup& markup)
{
    switch (markup.kind) {
        case Markup::Kind::Open:
            Open(markup);
            break;
        case Markup::Kind::OpenAndClose:
            Open(markup);
            Close();
            break;
        case Markup::Kind::Close:
            Close();
            break;
        default:
            Text(markup);
    }
}

void ContentsBuilder::Open(const Markup& tag)
{
    if (m_depth + 1 < m_places.size()) {
        m_places[m_depth + 1] = PlaceOf(tag);
    }
    ++m_depth;
}

void ContentsBuilder::Close()
{
    if (m_depth == 0) {
        return;
    }
    const Place place = m_depth < m_places.size() ? m_places[m_depth] : Place::Other;
    if (place == Place::Product) {
        m_contents.policies.back().endSection = SizeOf(m_contents.sections);
    } else if (place == Place::Task) {
        m_contents.tasks.back().endSection = SizeOf(m_contents.sections);
    }
    --m_depth;
}

void ContentsBuilder::Text(const Markup& markup)
{
    // Only text directly inside a setting is part of its value.
    if (m_depth >= m_places.size() || m_places[m_depth] != Place::Setting) {
        return;
    }
    Piece& value = m_contents.settings.back().value;
    AppendDecoded(m_contents.texts, markup.text, markup.kind == Markup::Kind::Verbatim);
    value.length = SizeOf(m_contents.texts) - value.offset;
}

ContentsBuilder::Place ContentsBuilder::PlaceOf(const Markup& tag)
{
    switch (m_places[m_depth]) {
        case Place::Document:
            return Place::Root;
        case Place::Root:
            return OpenRootChild(tag);
        case Place::PolicyRoot:
            return OpenPolicyGroup(tag);
        case Place::PolicyGroup:
            return OpenPolicy(tag);
        case Place::Policy:
            return OpenProduct(tag);
        case Place::TaskRoot:
            return OpenTaskGroup(tag);
        case Place::TaskGroup:
            return OpenTask(tag);
        case Place::Product:
        case Place::Task:
            return OpenSection(tag);
        case Place::Section:
            return OpenSetting(tag);
        default:
            return Place::Other;
    }
}

ContentsBuilder::Place ContentsBuilder::OpenRootChild(const Markup& tag)
{
    const bool isPolicies = tag.text == "PolicyRoot";
    if (!isPolicies && tag.text != "TaskRoot") {
        return Place::Other;
    }
    bool& isKnown = isPolicies ? m_contents.places.policyRoot : m_contents.places.taskRoot;
    if (!isKnown) {
        (isPolicies ? m_contents.places.policyRootAt : m_contents.places.taskRootAt) = OffsetOf(tag);
    }
    isKnown = true;
    return isPolicies ? Place::PolicyRoot : Place::TaskRoot;
}

ContentsBuilder::Place ContentsBuilder::OpenPolicyGroup(const Markup& tag)
{
    if (tag.text != "PolicyGroup") {
        return Place::Other;
    }
    m_contents.places.policyGroup = true;
    return Place::PolicyGroup;
}

ContentsBuilder::Place ContentsBuilder::OpenPolicy(const Markup& tag)
{
    if (tag.text != "Policy") {
        return Place::Other;
    }
    m_contents.places.policy = true;
    // Every product of the policy repeats the version, so a long one, which is no version, is cut.
    m_policyVersion = Keep(Shortened(AttributeOf(tag.attributes, "PolicyVersion").value_or("")));
    return Place::Policy;
}

ContentsBuilder::Place ContentsBuilder::OpenProduct(const Markup& tag)
{
    const auto softwareId = AttributeOf(tag.attributes, "SoftwareID");
    if (tag.text != "Product" || !softwareId) {
        return Place::Other;
    }
    std::deque<Policy>& policies = m_contents.policies;
    const std::uint32_t known = m_policyKeys.FindOrAdd(
        KeyOf(0, *softwareId), SizeOf(policies),
        [&](std::uint32_t number) { return m_contents.Text(policies[number].softwareId) == *softwareId; });
    if (known != kNone) {
        return Place::Other;
    }
    const std::uint32_t section = SizeOf(m_contents.sections);
    policies.push_back({Keep(*softwareId), m_policyVersion, section, section, OffsetOf(tag)});
    ++m_entry;
    return Place::Product;
}

ContentsBuilder::Place ContentsBuilder::OpenTaskGroup(const Markup& tag)
{
    if (tag.text != "TaskGroup") {
        return Place::Other;
    }
    if (!AttributeOf(tag.attributes, "SoftwareID") || !AttributeOf(tag.attributes, "TaskID")) {
        return Place::Other;
    }
    m_group.softwareId = KeepAttribute(tag, "SoftwareID");
    m_group.taskId = KeepAttribute(tag, "TaskID");
    m_group.displayName = KeepAttribute(tag, "DisplayName");
    m_group.type = KeepAttribute(tag, "TaskType");
    m_group.platforms = KeepAttribute(tag, "Platforms");
    m_group.creator = KeepAttribute(tag, "CreatorID");
    m_group.priority = KeepAttribute(tag, "TaskPriority");
    m_group.group = OffsetOf(tag);
    m_isNewGroup = !HasTaskOfGroup();
    return Place::TaskGroup;
}

// Asked once for a group, not for each of its tasks: keys may be long.
bool ContentsBuilder::HasTaskOfGroup() const
{
    const std::deque<Task>& tasks = m_contents.tasks;
    const auto isSame = [&](std::uint32_t number) {
        return m_contents.Text(tasks[number].softwareId) == m_contents.Text(m_group.softwareId) &&
               m_contents.Text(tasks[number].taskId) == m_contents.Text(m_group.taskId);
    };
    return m_taskKeys.Find(KeyOfGroup(), isSame) != kNone;
}

std::uint32_t ContentsBuilder::KeyOfGroup() const
{
    return KeyOf(KeyOf(0, m_contents.Text(m_group.softwareId)), m_contents.Text(m_group.taskId));
}

ContentsBuilder::Place ContentsBuilder::OpenTask(const Markup& tag)
{
    if (tag.text != "Task") {
        return Place::Other;
    }
    if (!m_isNewGroup) {
        return Place::Other;
    }
    m_isNewGroup = false;
    std::deque<Task>& tasks = m_contents.tasks;
    m_taskKeys.Add(KeyOfGroup(), SizeOf(tasks));
    tasks.push_back(m_group);
    tasks.back().at = OffsetOf(tag);
    tasks.back().version = KeepAttribute(tag, "TaskVersion");
    tasks.back().firstSection = tasks.back().endSection = SizeOf(m_contents.sections);
    ++m_entry;
    return Place::Task;
}

ContentsBuilder::Place ContentsBuilder::OpenSection(const Markup& tag)
{
    const auto name = AttributeOf(tag.attributes, "name");
    if (!name) {
        return Place::Other;
    }
    std::deque<Section>& sections = m_contents.sections;
    m_section = m_sectionKeys.FindOrAdd(KeyOf(m_entry, *name), SizeOf(sections), [&](std::uint32_t number) {
        return sections[number].entry == m_entry && m_contents.Text(sections[number].name) == *name;
    });
    if (m_section == kNone) {
        m_section = SizeOf(sections);
        sections.push_back({Keep(*name), m_entry, kNone, kNone, OffsetOf(tag)});
    }
    return Place::Section;
}

ContentsBuilder::Place ContentsBuilder::OpenSetting(const Markup& tag)
{
    const auto name = AttributeOf(tag.attributes, "name");
    if (!name) {
        return Place::Other;
    }
    std::deque<Setting>& settings = m_contents.settings;
    const std::uint32_t number = SizeOf(settings);
    const std::uint32_t known = m_settingKeys.FindOrAdd(KeyOf(m_section, *name), number, [&](std::uint32_t other) {
        return settings[other].section == m_section && m_contents.Text(settings[other].name) == *name;
    });
    Section& section = m_contents.sections[m_section];
    if (known != kNone) {
        return Place::Other;
    }
    const Piece kept = Keep(*name);
    settings.push_back({kept, {SizeOf(m_contents.texts), 0}, m_section, kNone, OffsetOf(tag)});
    if (section.lastSetting == kNone) {
        section.firstSetting = number;
    } else {
        settings[section.lastSetting].next = number;
    }
    section.lastSetting = number;
    return Place::Setting;
}

Offset ContentsBuilder::OffsetOf(const Markup& tag) const
{
    // The name follows the bracket that begins the tag.
    return static_cast<Offset>(tag.text.data() - m_document.data() - 1);
}

Piece ContentsBuilder::Keep(std::string_view text)
{
    const Piece piece{SizeOf(m_contents.texts), SizeOf(text)};
    m_contents.texts += text;
    return piece;
}

Piece ContentsBuilder::KeepAttribute(const Markup& tag, std::string_view name)
{
    const auto value = AttributeOf(tag.attributes, name);
    return value ? Keep(*value) : Piece();
}

FileContents ContentsBuilder::Take()
{
    return std::move(m_contents);
}

}  // namespace zupm::tool
