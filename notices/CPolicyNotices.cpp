#include "notices/CPolicyNotices.h"

#include "com/ObjectForms.h"
#include "com/Strings.h"
#include "text/Utf.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

result::Code CPolicyNotices::HandOut(Notices notices, IPolicyNotices** slot)
{
    ComPtr<CPolicyNotices> object;
    const result::Code code = CreatePlain(object, notices);
    if (code >= 0) {
        *slot = object.Detach();
    }
    return code;
}

bool CPolicyNotices::Has(LONG index) const noexcept
{
    return index >= 0 && static_cast<std::size_t>(index) < m_notices.Count();
}

template <class Value>
HRESULT CPolicyNotices::GetNumber(std::u16string_view operation, LONG index, LONG* slot, Value value) const noexcept
{
    return Call(operation, [&]() -> result::Code {
        if (slot == nullptr || !Has(index)) {
            return result::BadArgument;
        }
        *slot = static_cast<LONG>(value(static_cast<std::size_t>(index)));
        return result::Success;
    });
}

template <class Value>
HRESULT CPolicyNotices::GetText(std::u16string_view operation, LONG index, BSTR* slot, Value value) const noexcept
{
    return Call(operation, [&]() -> result::Code {
        if (slot == nullptr || !Has(index)) {
            return result::BadArgument;
        }
        return ReplaceString(slot, ToUtf16Lossy(value(static_cast<std::size_t>(index))));
    });
}

HRESULT CPolicyNotices::get_Count(LONG* pVal) noexcept
{
    return Call(u"CPolicyNotices::get_Count()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        *pVal = static_cast<LONG>(m_notices.Count());
        return result::Success;
    });
}

HRESULT CPolicyNotices::get_Kind(LONG lIndex, LONG* pVal) noexcept
{
    return GetNumber(u"CPolicyNotices::get_Kind()", lIndex, pVal,
                     [&](std::size_t index) { return m_notices.Kind(index); });
}

HRESULT CPolicyNotices::get_Line(LONG lIndex, LONG* pVal) noexcept
{
    return GetNumber(u"CPolicyNotices::get_Line()", lIndex, pVal,
                     [&](std::size_t index) { return m_notices.Position(index).line; });
}

HRESULT CPolicyNotices::get_Column(LONG lIndex, LONG* pVal) noexcept
{
    return GetNumber(u"CPolicyNotices::get_Column()", lIndex, pVal,
                     [&](std::size_t index) { return m_notices.Position(index).column; });
}

HRESULT CPolicyNotices::get_SoftwareID(LONG lIndex, BSTR* pVal) noexcept
{
    return GetText(u"CPolicyNotices::get_SoftwareID()", lIndex, pVal,
                   [&](std::size_t index) { return m_notices.SoftwareId(index); });
}

HRESULT CPolicyNotices::get_TaskID(LONG lIndex, BSTR* pVal) noexcept
{
    return GetText(u"CPolicyNotices::get_TaskID()", lIndex, pVal,
                   [&](std::size_t index) { return m_notices.TaskId(index); });
}

HRESULT CPolicyNotices::get_Text(LONG lIndex, BSTR* pVal) noexcept
{
    return GetText(u"CPolicyNotices::get_Text()", lIndex, pVal,
                   [&](std::size_t index) { return m_notices.Sentence(index); });
}

}  // namespace zupm
