#include "names/CPolicyNames.h"

#include "com/ObjectForms.h"
#include "com/Strings.h"
#include "names/CNameEnumerator.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

result::Code CPolicyNames::HandOut(NameList names, IPolicyNames** slot)
{
    const auto shared = std::make_shared<const NameList>(std::move(names));
    ComPtr<CPolicyNames> object;
    const result::Code code = CreatePlain(object, shared);
    if (code >= 0) {
        *slot = object.Detach();
    }
    return code;
}

HRESULT CPolicyNames::get_Item(LONG lIndex, BSTR* pVal) noexcept
{
    return Call(u"CPolicyNames::get_Item()", [&]() -> result::Code {
        if (pVal == nullptr || lIndex < 0 || static_cast<std::size_t>(lIndex) >= m_names->Size()) {
            return result::BadArgument;
        }
        return ReplaceString(pVal, m_names->At(static_cast<std::size_t>(lIndex)));
    });
}

HRESULT CPolicyNames::get_Count(LONG* pVal) noexcept
{
    return Call(u"CPolicyNames::get_Count()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        *pVal = static_cast<LONG>(m_names->Size());
        return result::Success;
    });
}

HRESULT CPolicyNames::get__NewEnum(IUnknown** pVal) noexcept
{
    return Call(u"CPolicyNames::get__NewEnum()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        ComPtr<CNameEnumerator> created;
        constexpr std::size_t kStart = 0;
        const result::Code code = CreatePlain(created, m_names, kStart);
        if (code >= 0) {
            *pVal = created.Detach();
        }
        return code;
    });
}

}  // namespace zupm
