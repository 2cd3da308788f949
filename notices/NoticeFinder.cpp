#include "notices/NoticeFinder.h"

#include <utility>

#include "text/Decimal.h"
#include "text/Utf.h"
#include "xml/Escape.h"
#include "xml/TagScanner.h"

namespace zupm {

using AdvXMLParser::Tag;
using AdvXMLParser::TagKind;

namespace {

/// A sign and digits, with or without white space around them.
bool IsNumber(std::string_view text) noexcept
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return false;
    }
    text = text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
    if (text.front() == '-' || text.front() == '+') {
        text.remove_prefix(1);
    }
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

Notices NoticeFinder::Find()
{
    while (const std::optional<Tag> tag = m_reader.Next()) {
        if (tag->kind != TagKind::End) {
            Open(*tag);
        }
        if (tag->kind != TagKind::Start) {
            Close(*tag);
        }
    }
    if (!m_hasRoots) {
        m_notices.AddInFront(NoticeKind::NoRoots, m_root);
    }
    return std::move(m_notices);
}

void NoticeFinder::Open(const Tag& tag)
{
    if (m_depth + 1 < m_places.size()) {
        if (m_places[m_depth] == Place::Setting && !m_task.empty()) {
            AdvXMLParser::AppendDecodedText(m_text.substr(m_valueAt, tag.begin - m_valueAt), m_value);
        }
        m_places[m_depth + 1] = PlaceOf(m_text.substr(tag.begin, tag.end - tag.begin));
        if (m_places[m_depth + 1] == Place::Setting) {
            m_valueAt = tag.end;
            m_value.clear();
        }
    }
    ++m_depth;
}

void NoticeFinder::Close(const Tag& tag)
{
    if (m_depth < m_places.size()) {
        const Place place = m_places[m_depth];
        if (place == Place::Setting && !m_task.empty()) {
            CloseSetting(tag.kind == TagKind::Empty ? tag.end : tag.begin);
        } else if (m_places[m_depth - 1] == Place::Setting) {
            m_valueAt = tag.end;
        } else if (place == Place::Task) {
            m_task = {};
        }
    }
    --m_depth;
}

/// The value of a task's setting is complete. Nothing inside a setting has a notice, so its place is still ahead of all
/// others.
void NoticeFinder::CloseSetting(std::uint32_t valueEnd)
{
    std::string_view value = m_text.substr(m_valueAt, valueEnd - m_valueAt);
    if (!m_value.empty() || value.find_first_of("&<\r") != std::string_view::npos) {
        AdvXMLParser::AppendDecodedText(value, m_value);
        value = m_texts.emplace_back(std::exchange(m_value, {}));
    }
    Named& section = m_sections[m_section];
    Named& setting = m_settings.back();
    const std::optional<IniSettings::First> first = m_iniSettings.Add(
        {section.name, setting.name, value, m_section, static_cast<std::uint32_t>(m_settings.size() - 1)});
    if (!first || (first->setting == nullptr && FieldValue(first->field) == value)) {
        return;
    }
    const Notices::Subjects later{KeptName(setting), KeptName(section)};
    const AdvXMLParser::Position position = PositionOf(m_setting);
    if (first->setting == nullptr) {
        m_notices.AddPair(NoticeKind::SameAsField, position, CurrentEntry(), later,
                          {m_notices.Keep(kIniFields[first->field]), {}});
    } else {
        m_notices.AddPair(
            NoticeKind::SameInIni, position, CurrentEntry(), later,
            {KeptName(m_settings[first->setting->number]), KeptName(m_sections[first->setting->sectionNumber])});
    }
}

NoticeFinder::Place NoticeFinder::PlaceOf(std::string_view tag)
{
    switch (m_places[m_depth]) {
        case Place::Document:
            m_root = PositionOf(tag);
            return Place::Root;
        case Place::Root:
            return OpenRootChild(tag);
        case Place::PolicyRoot:
            return AdvXMLParser::TagName(tag) == "PolicyGroup" ? Place::PolicyGroup : Place::Other;
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

NoticeFinder::Place NoticeFinder::OpenRootChild(std::string_view tag)
{
    const std::string_view name = AdvXMLParser::TagName(tag);
    const bool isPolicies = name == "PolicyRoot";
    if (!isPolicies && name != "TaskRoot") {
        return Place::Other;
    }
    m_hasRoots = true;
    OpenEntry({}, {});
    RequireNumber(tag, "version");
    return isPolicies ? Place::PolicyRoot : Place::TaskRoot;
}

NoticeFinder::Place NoticeFinder::OpenPolicy(std::string_view tag)
{
    if (AdvXMLParser::TagName(tag) != "Policy") {
        return Place::Other;
    }
    OpenEntry({}, {});
    RequireNumber(tag, "PolicyVersion");
    return Place::Policy;
}

NoticeFinder::Place NoticeFinder::OpenProduct(std::string_view tag)
{
    const bool isProduct = AdvXMLParser::TagName(tag) == "Product";
    const std::optional<std::string_view> id = isProduct ? Attribute(tag, "SoftwareID", m_ids) : std::nullopt;
    if (!id) {
        return Place::Other;
    }
    OpenEntry(*id, {});
    if (!m_policyIds.Add(0, *id).isNew) {
        Notice(NoticeKind::PolicyAgain, tag);
        return Place::Other;
    }
    return Place::Product;
}

NoticeFinder::Place NoticeFinder::OpenTaskGroup(std::string_view tag)
{
    if (AdvXMLParser::TagName(tag) != "TaskGroup") {
        return Place::Other;
    }
    const std::optional<std::string_view> softwareId = Attribute(tag, "SoftwareID", m_ids);
    const std::optional<std::string_view> taskId = Attribute(tag, "TaskID", m_ids);
    OpenEntry(softwareId.value_or(""), taskId.value_or(""));
    m_group = tag;
    m_groupHasTask = false;
    RequireNumber(tag, "TaskVersion");
    return softwareId && taskId ? Place::TaskGroup : Place::Other;
}

NoticeFinder::Place NoticeFinder::OpenTask(std::string_view tag)
{
    if (AdvXMLParser::TagName(tag) != "Task") {
        return Place::Other;
    }
    RequireNumber(tag, "TaskVersion");
    // The IDs are the group's, which may be long: they are looked up for its first task alone.
    const bool isNew = !std::exchange(m_groupHasTask, true) &&
                       m_taskIds.Add(m_taskSoftwareIds.Add(0, m_softwareId).number, m_taskId).isNew;
    if (!isNew) {
        Notice(NoticeKind::TaskAgain, tag);
        return Place::Other;
    }
    m_task = tag;
    m_iniSettings.Open();
    return Place::Task;
}

void NoticeFinder::OpenEntry(std::string_view softwareId, std::string_view taskId)
{
    m_softwareId = softwareId;
    m_taskId = taskId;
    m_entry = 0;
    m_task = {};
    m_sectionNames.Clear();
    m_settingNames.Clear();
    m_sections.clear();
    m_settings.clear();
    m_texts.clear();
}

NoticeFinder::Place NoticeFinder::OpenSection(std::string_view tag)
{
    const std::optional<std::string_view> name = Attribute(tag, "name", m_texts);
    if (!name) {
        return Place::Other;
    }
    const SeenNames::Added added = m_sectionNames.Add(0, *name);
    m_section = added.number;
    if (added.isNew) {
        m_sections.push_back({*name, std::nullopt});
    } else {
        Notice(NoticeKind::SectionAgain, tag, {KeptName(m_sections[m_section]), {}});
    }
    return Place::Section;
}

NoticeFinder::Place NoticeFinder::OpenSetting(std::string_view tag)
{
    const std::optional<std::string_view> name = Attribute(tag, "name", m_texts);
    if (!name) {
        return Place::Other;
    }
    const SeenNames::Added added = m_settingNames.Add(m_section, *name);
    if (!added.isNew) {
        Notice(NoticeKind::SettingAgain, tag, {KeptName(m_settings[added.number]), KeptName(m_sections[m_section])});
        return Place::Other;
    }
    m_settings.push_back({*name, std::nullopt});
    m_setting = tag;
    return Place::Setting;
}

std::string NoticeFinder::FieldValue(std::size_t number)
{
    struct Source {
        bool isTask;  ///< an attribute of the task, not of its group
        std::string_view attribute;
        std::string_view missing;  ///< what loading takes when the file does not have it
    };
    constexpr std::array<Source, kIniFields.size()> kSources = {{
        {false, "DisplayName", "invalid"},
        {false, "Platforms", "invalid"},
        {false, "TaskPriority", ""},
        {false, "SoftwareID", ""},
        {false, "TaskID", ""},
        {false, "CreatorID", "invalid"},
        {false, "TaskType", "invalid"},
        {true, "TaskVersion", ""},
    }};
    const Source& source = kSources.at(number);
    const std::string_view text =
        Attribute(source.isTask ? m_task : m_group, source.attribute, m_texts).value_or(source.missing);
    if (source.attribute != "TaskPriority") {
        return std::string(text);
    }
    return ToUtf8Lossy(FormatSigned(ParseInt32(ToUtf16Lossy(text))));
}

std::optional<std::string_view> NoticeFinder::Attribute(std::string_view tag, std::string_view name,
                                                        std::deque<std::string>& decoded)
{
    AdvXMLParser::TagScanner scanner(tag);
    while (const std::optional<AdvXMLParser::AttributeSpan> span = scanner.Next()) {
        if (span->name == name) {
            return span->value.find_first_of("&\t\n\r") == std::string_view::npos
                       ? span->value
                       : std::string_view(decoded.emplace_back(AdvXMLParser::DecodeAttribute(span->value)));
        }
    }
    return std::nullopt;
}

void NoticeFinder::RequireNumber(std::string_view tag, std::string_view name)
{
    std::deque<std::string> decoded;
    const std::optional<std::string_view> value = Attribute(tag, name, decoded);
    if (value && !IsNumber(*value)) {
        Notice(NoticeKind::NotANumber, tag, {m_notices.Keep(name), m_notices.KeepName(*value)});
    }
}

AdvXMLParser::Position NoticeFinder::PositionOf(std::string_view tag)
{
    return m_positions.At(static_cast<std::size_t>(tag.data() - m_text.data()));
}

void NoticeFinder::Notice(NoticeKind kind, std::string_view tag, const Notices::Subjects& subjects)
{
    m_notices.Add(kind, PositionOf(tag), CurrentEntry(), subjects);
}

std::uint32_t NoticeFinder::CurrentEntry()
{
    if (m_entry == 0 && !(m_softwareId.empty() && m_taskId.empty())) {
        m_entry = m_notices.AddEntry({m_notices.Keep(m_softwareId), m_notices.Keep(m_taskId)});
    }
    return m_entry;
}

NoticeText NoticeFinder::KeptName(Named& named)
{
    if (!named.kept) {
        named.kept = m_notices.KeepName(named.name);
    }
    return *named.kept;
}

}  // namespace zupm
