#include "task/CPolicyTask.h"

#include "com/SettingSlot.h"
#include "com/Strings.h"
#include "settings/Schema.h"
#include "xml/Document.h"

namespace zupm {

using AdvXMLParser::Document;
using AdvXMLParser::Element;

// Given: see docs/given-oddities.md, "invalid".
CPolicyTask::CPolicyTask() : m_section(u"invalid"), m_data(this) {}

HRESULT CPolicyTask::FinalConstruct() noexcept
{
    return Call(kCreation, [&]() -> result::Code {
        const result::Code code = ResourceModuleUse::EnsureLoaded();
        return code < 0 ? code : LoadEmptyTask();
    });
}

result::Code CPolicyTask::LoadEmptyTask()
{
    const CriticalSectionLock lock(m_lock);
    if (m_isLoaded) {
        return result::Success;
    }
    m_isLoaded = true;
    const Document detached(schema::kTaskGroup);
    const Element task = detached.GetRoot().CreateElement(schema::kTask);
    return m_data.Initialize(detached.GetRoot(), task);
}

HRESULT CPolicyTask::get_TaskData(BSTR* pVal) noexcept
{
    return Call(u"CPolicyTask::get_TaskData()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        std::u16string text;
        const result::Code code = m_data.GetTaskDataXml(text);
        return code < 0 ? code : StoreString(pVal, text);
    });
}

HRESULT CPolicyTask::put_Section(BSTR newVal) noexcept
{
    return Call(u"CPolicyTask::put_Section()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        m_section = TextOf(newVal);
        return result::Success;
    });
}

HRESULT CPolicyTask::GetSetting(BSTR strName, BSTR* pstrValue) noexcept
{
    return Call(u"CPolicyTask::GetSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return StoreSetting(m_data, m_section, strName, pstrValue);
    });
}

HRESULT CPolicyTask::PutSetting(BSTR strName, BSTR strValue) noexcept
{
    return Call(u"CPolicyTask::PutSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.PutSectionSetting(m_section, TextOf(strName), TextOf(strValue));
    });
}

HRESULT CPolicyTask::GetSectionSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept
{
    return Call(u"CPolicyTask::GetSectionSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return StoreSetting(m_data, TextOf(strSection), strName, pstrValue);
    });
}

HRESULT CPolicyTask::PutSectionSetting(BSTR strSection, BSTR strName, BSTR strValue) noexcept
{
    return Call(u"CPolicyTask::PutSectionSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.PutSectionSetting(TextOf(strSection), TextOf(strName), TextOf(strValue));
    });
}

HRESULT CPolicyTask::RemoveSetting(BSTR strSection, BSTR strName) noexcept
{
    return Call(u"CPolicyTask::RemoveSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.RemoveSetting(TextOf(strSection), TextOf(strName));
    });
}

HRESULT CPolicyTask::RemoveSection(BSTR strName) noexcept
{
    return Call(u"CPolicyTask::RemoveSection()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.RemoveSection(TextOf(strName));
    });
}

HRESULT CPolicyTask::WriteTaskDataToIniFile(BSTR bstrFileName) noexcept
{
    return Call(u"CPolicyTask::WriteTaskDataToIniFile()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.WriteTaskDataToIniFile(TextOf(bstrFileName));
    });
}

result::Code CPolicyTask::BindFromElements(const Element& group, const Element& task)
{
    const CriticalSectionLock lock(m_lock);
    m_isLoaded = true;
    return m_data.Initialize(group, task);
}

result::Code CPolicyTask::BindFromText(std::u16string_view xml, std::u16string& detail)
{
    const CriticalSectionLock lock(m_lock);
    m_isLoaded = true;
    return m_data.Initialize(xml, detail);
}

result::Code CPolicyTask::CopyIntoFile(const Element& group, std::uint64_t& version)
{
    const CriticalSectionLock lock(m_lock);
    return m_data.CopyData(group, version);
}

}  // namespace zupm
