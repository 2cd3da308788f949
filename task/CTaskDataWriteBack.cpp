// Writes a task into XML: into its private copy, and into a policy file.
#include <utility>

#include "common/TimeStamp.h"
#include "settings/CatchAll.h"
#include "settings/Schema.h"
#include "task/CTaskData.h"
#include "text/Decimal.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// One step of the write-back. An empty attribute or section leaves that half out.
struct FieldRow {
    std::u16string_view attribute;
    std::u16string_view section;
    std::u16string_view setting;
    std::u16string_view value;
};

}  // namespace

result::Code CTaskData::GetTaskDataXml(std::u16string& text)
{
    std::uint64_t version = 0;
    const result::Code code = UpdateTaskGroupElement(m_copy.Wrapper(), version);
    if (code >= 0) {
        text = m_copy.Text();
    }
    return code;
}

result::Code CTaskData::CopyData(Element group, std::uint64_t& version) noexcept
{
    return CatchAll(u"CTaskData::CopyData()", [&]() -> result::Code {
        if (!m_copy.IsInitialised()) {
            return result::NotInitialised;
        }
        if (!group.NameIs(schema::kTaskGroup)) {
            return result::ElementMissing;
        }
        m_fields.RequireXml();
        for (const Element child : ElementChildren(m_copy.Wrapper())) {
            group.DeleteChildren();
            group.Add(child.Clone());
        }
        return UpdateTaskGroupElement(group, version);
    });
}

result::Code CTaskData::UpdateTaskGroupElement(const Element& group, std::uint64_t& version)
{
    if (!group.NameIs(schema::kTaskGroup)) {
        return result::ElementMissing;
    }
    const std::u16string stamp = cmnblib_CurrentTimeToGMTTimeStamp();
    version = static_cast<std::uint64_t>(ParseInt64(stamp));
    const Element task = FirstChildNamed(group, schema::kTask);
    if (task.IsNull()) {
        return result::ElementMissing;
    }
    m_fields.RequireXml();
    std::unique_ptr<CSectionParser> settings = m_copy.CreateCursor(task);
    if (!settings) {
        return result::AllocationFailed;
    }
    SetAttribute(task, schema::kTaskVersion, stamp);
    SetAttribute(task, schema::kPathId, schema::kDefaultPath);
    const result::Code code = settings->Initialize();
    if (code < 0) {
        return code;
    }
    CSectionParser& writer = *settings;
    if (group == m_copy.Wrapper()) {
        // The old cursor of the private copy would not know the settings that are written now, and add them again. The
        // new one knows them.
        m_copy.AdoptCursor(std::move(settings));
    }
    WriteFields(group, writer, stamp);
    return code;
}

void CTaskData::WriteFields(const Element& group, CSectionParser& settings, std::u16string_view stamp) const
{
    const std::u16string priority = FormatSigned(m_fields.priority);
    const FieldRow rows[] = {
        {schema::kPath, {}, {}, schema::kDefaultPath},
        {schema::kTaskId, u"Task", u"TaskID", m_fields.taskId},
        {schema::kDisplayName, u"Task", u"TaskName", m_fields.displayName},
        {schema::kTaskType, u"Task", u"TaskType", m_fields.taskType},
        // Given: see docs/given-oddities.md, "the type three times".
        {{}, u"General", u"TaskType", m_fields.taskType},
        {{}, u"General", u"wTaskType", m_fields.taskType},
        {schema::kSoftwareId, {}, {}, m_fields.softwareId},
        {schema::kCreatorId, {}, {}, m_fields.creatorId},
        {schema::kPlatforms, u"Task", u"Platforms", m_fields.platformsSupported},
        {schema::kTaskPriority, u"Task", u"TaskPriority", priority},
        {schema::kTaskVersion, {}, {}, stamp},
    };
    for (const FieldRow& row : rows) {
        if (!row.attribute.empty()) {
            SetAttribute(group, row.attribute, row.value);
        }
        if (!row.section.empty()) {
            // The attributes carry the fields, too, so a setting that could not be written ends nothing.
            static_cast<void>(settings.SetSettingValue(row.section, row.setting, row.value));
        }
    }
}

}  // namespace zupm
