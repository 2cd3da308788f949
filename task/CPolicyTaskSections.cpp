// Listing sections and settings: IPolicySections.
#include "com/Strings.h"
#include "names/CPolicyNames.h"
#include "task/CPolicyTask.h"

namespace zupm {

HRESULT CPolicyTask::get_SectionNames(IPolicyNames** pVal) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyTask::get_SectionNames()", [&] {
        return HandOutNames(pVal, [&](NameList& names) {
            const CriticalSectionLock lock(m_lock);
            return m_data.GetSectionNames(names);
        });
    });
}

HRESULT CPolicyTask::GetSettingNames(BSTR strSection, IPolicyNames** pNames) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyTask::GetSettingNames()", [&] {
        return HandOutNames(pNames, [&](NameList& names) {
            const CriticalSectionLock lock(m_lock);
            return m_data.GetSettingNames(TextOf(strSection), names);
        });
    });
}

HRESULT CPolicyTask::GetStoredSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyTask::GetStoredSetting()", [&]() -> result::Code {
        if (pstrValue == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        std::u16string value;
        const result::Code code = m_data.GetStoredSetting(TextOf(strSection), TextOf(strName), value);
        return code < 0 ? code : ReplaceString(pstrValue, value);
    });
}

HRESULT CPolicyTask::get_TakenVersion(BSTR* pVal) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyTask::get_TakenVersion()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return ReplaceString(pVal, m_data.Fields().version);
    });
}

}  // namespace zupm
