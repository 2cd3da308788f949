// Listing sections and settings: IPolicySections.
#include "com/Strings.h"
#include "names/CPolicyNames.h"
#include "policy/CPolicyProduct.h"

namespace zupm {

HRESULT CPolicyProduct::get_SectionNames(IPolicyNames** pVal) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyProduct::get_SectionNames()", [&] {
        return HandOutNames(pVal, [&](NameList& names) {
            const CriticalSectionLock lock(m_lock);
            return m_data.GetSectionNames(names);
        });
    });
}

HRESULT CPolicyProduct::GetSettingNames(BSTR strSection, IPolicyNames** pNames) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyProduct::GetSettingNames()", [&] {
        return HandOutNames(pNames, [&](NameList& names) {
            const CriticalSectionLock lock(m_lock);
            return m_data.GetSettingNames(TextOf(strSection), names);
        });
    });
}

HRESULT CPolicyProduct::GetStoredSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyProduct::GetStoredSetting()", [&]() -> result::Code {
        if (pstrValue == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        std::u16string value;
        const result::Code code = m_data.GetStoredSetting(TextOf(strSection), TextOf(strName), value);
        return code < 0 ? code : ReplaceString(pstrValue, value);
    });
}

HRESULT CPolicyProduct::get_TakenVersion(BSTR* pVal) noexcept
{
    return CallOf(IID_IPolicySections, u"CPolicyProduct::get_TakenVersion()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return ReplaceString(pVal, m_data.GetTakenVersion());
    });
}

}  // namespace zupm
