#include "task/CTaskData.h"

#include <utility>

#include "common/PrivateProfile.h"
#include "settings/CatchAll.h"
#include "settings/Schema.h"
#include "settings/TextForm.h"
#include "text/Decimal.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// The first "Task" of the first "TaskGroup" that has one; nulls when there is none.
CTaskRef FindTask(const Element& root)
{
    for (const Element group : ElementChildren(root)) {
        const Element task = group.NameIs(schema::kTaskGroup) ? FirstChildNamed(group, schema::kTask) : Element();
        if (!task.IsNull()) {
            return {group, task};
        }
    }
    return {Element(), Element()};
}

}  // namespace

CTaskData::CTaskData(const void* ownerLink) : m_copy(u"TaskData", schema::kTaskGroup, ownerLink) {}

result::Code CTaskData::Initialize(const Element& group, const Element& task) noexcept
{
    return CatchAll(u"CTaskData::Initialize()", [&]() -> result::Code {
        if (m_copy.IsInitialised()) {
            m_copy.Drop();
        }
        m_fields.Read(group, task);
        return m_copy.Take(task);
    });
}

result::Code CTaskData::Initialize(std::u16string_view xml, std::u16string& detail)
{
    return LoadFromText(u"CTaskData::Initialize()", xml, detail, [&](const Element& root) -> result::Code {
        const CTaskRef found = FindTask(root);
        return found.GetGroup().IsNull() ? result::ElementMissing : Initialize(found.GetGroup(), found.GetElement());
    });
}

result::Code CTaskData::Deinitialize()
{
    m_copy.Drop();
    return result::Success;
}

result::Code CTaskData::GetSectionSetting(std::u16string_view section, std::u16string_view name, std::u16string& value)
{
    return m_copy.GetSectionSetting(section, name, value);
}

result::Code CTaskData::GetStoredSetting(std::u16string_view section, std::u16string_view name, std::u16string& value)
{
    return m_copy.GetStoredSetting(section, name, value);
}

result::Code CTaskData::GetSectionNames(NameList& names)
{
    return m_copy.GetSectionNames(names);
}

result::Code CTaskData::GetSettingNames(std::u16string_view section, NameList& names)
{
    return m_copy.GetSettingNames(section, names);
}

result::Code CTaskData::PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                          std::u16string_view value)
{
    return m_copy.PutSectionSetting(section, name, value);
}

result::Code CTaskData::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    return m_copy.RemoveSetting(section, name);
}

result::Code CTaskData::RemoveSection(std::u16string_view name)
{
    if (!m_copy.IsInitialised()) {
        return result::NotInitialised;
    }
    const Element task = m_copy.Content();
    // Given: see docs/given-oddities.md, "rebuilt on a miss".
    if (task.IsNull() || !DeleteFirstSection(task, name)) {
        return result::SectionNotFound;
    }
    return m_copy.ReopenCursor();
}

result::Code CTaskData::WriteTaskDataToIniFile(std::u16string_view path)
{
    if (path.empty()) {
        return result::GeneralFailure;
    }
    constexpr std::u16string_view kSection = u"Task";
    const std::u16string priority = FormatSigned(m_fields.priority);
    // Given: see docs/given-oddities.md, "names of the INI file".
    const std::pair<std::u16string_view, std::u16string_view> rows[] = {
        {u"TaskName", m_fields.displayName}, {u"Platforms", m_fields.platformsSupported},
        {u"TaskPriority", priority},         {u"SoftwareName", m_fields.softwareId},
        {u"TaskID", m_fields.taskId},        {u"CreatorSoftwareID", m_fields.creatorId},
        {u"TaskType", m_fields.taskType},    {u"TaskVersion", m_fields.version},
    };
    CIniNames written;
    for (const auto& [key, value] : rows) {
        if (!WritePrivateProfileStringW(kSection, key, value, path)) {
            return result::GeneralFailure;
        }
        written.Add(kSection, key, value);
    }
    // Given: see docs/given-oddities.md, "fields without a task".
    CSectionParser* const cursor = m_copy.Cursor();
    return cursor == nullptr ? result::CursorNotInitialised
                             : cursor->WriteAllSettingsToIniFile(path, std::move(written));
}

}  // namespace zupm
