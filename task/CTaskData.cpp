#include "task/CTaskData.h"

#include <utility>

#include "common/PrivateProfile.h"
#include "settings/CatchAll.h"
#include "settings/Elements.h"
#include "settings/ParseFailure.h"
#include "text/Decimal.h"
#include "xml/Exceptions.h"
#include "xml/Parser.h"

namespace zupm {

using AdvXMLParser::Document;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// The first "Task" of the first "TaskGroup" that has one; nulls when there is none.
CTaskRef FindTask(const Element& root)
{
    for (const Element group : ElementChildren(root)) {
        if (!group.NameIs(u"TaskGroup")) {
            continue;
        }
        for (const Element task : ElementChildren(group)) {
            if (task.NameIs(u"Task")) {
                return {group, task};
            }
        }
    }
    return {Element(), Element()};
}

}  // namespace

CTaskData::CTaskData(const void* ownerLink)
    : m_document(u"TaskData"),
      m_group(std::make_unique<CElementRef>(m_document.GetRoot().AddElementInto(u"TaskGroup"))),
      m_ownerLink(ownerLink)
{
}

CTaskData::~CTaskData()
{
    m_cursor.reset();  // before the document that it looks at
}

result::Code CTaskData::Initialize(const Element& group, const Element& task) noexcept
{
    return CatchAll(u"CTaskData::Initialize()", [&] { return LoadTask(group, task); });
}

result::Code CTaskData::LoadTask(const Element& group, const Element& task)
{
    if (m_initialised) {
        Deinitialize();
    }
    m_fields.Read(group, task);
    m_cursor.reset();  // left by an initialisation that failed
    Element target = m_group->GetElement();
    target.DeleteChildren();
    target.Add(task.Clone());
    const result::Code code = Task().IsNull() ? result::Success : OpenCursor();
    m_initialised = code >= 0;
    return code;
}

result::Code CTaskData::OpenCursor()
{
    std::unique_ptr<CSectionParser> cursor = CSectionParser::Create(Task(), m_ownerLink);
    if (!cursor) {
        return result::AllocationFailed;
    }
    m_cursor = std::move(cursor);
    return m_cursor->Initialize();
}

result::Code CTaskData::Initialize(std::u16string_view xml, std::u16string& detail)
{
    try {
        const std::unique_ptr<Document> document = AdvXMLParser::Parser().Parse(xml.data(), xml.size());
        if (!document) {
            return result::AllocationFailed;
        }
        const CTaskRef found = FindTask(document->GetRoot());
        return found.GetGroup().IsNull() ? result::ElementMissing : Initialize(found.GetGroup(), found.GetElement());
    } catch (const AdvXMLParser::ParsingException& error) {
        return ReportParseFailure(u"CTaskData::Initialize()", kTextSource, error, detail);
    }
}

result::Code CTaskData::Deinitialize()
{
    m_cursor.reset();
    m_initialised = false;
    m_group->GetElement().DeleteChildren();
    return result::Success;
}

result::Code CTaskData::GetSectionSetting(std::u16string_view section, std::u16string_view name, std::u16string& value)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetSettingValue(section, name, value);
}

result::Code CTaskData::PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                          std::u16string_view value)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->SetSettingValue(section, name, value);
}

result::Code CTaskData::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->RemoveSetting(section, name);
}

result::Code CTaskData::RemoveSection(std::u16string_view name)
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const Element task = Task();
    if (task.IsNull() || !DeleteFirstSection(task, name)) {
        return result::SectionNotFound;
    }
    m_cursor.reset();
    return OpenCursor();
}

result::Code CTaskData::WriteTaskDataToIniFile(std::u16string_view path)
{
    if (path.empty()) {
        return result::GeneralFailure;
    }
    constexpr std::u16string_view kSection = u"Task";
    const std::u16string priority = FormatSigned(m_fields.priority);
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
    return m_cursor ? m_cursor->WriteAllSettingsToIniFile(path, std::move(written)) : result::CursorNotInitialised;
}

Element CTaskData::Task() const noexcept
{
    return FirstChild(m_group->GetElement());
}

result::Code CTaskData::CheckCursor() const noexcept
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    // There is no cursor when the task that was loaded was a null element, or after memory ran out on reopening it.
    return m_cursor ? result::Success : result::CursorNotInitialised;
}

}  // namespace zupm
