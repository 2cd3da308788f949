#include "names/CNameEnumerator.h"

#include <algorithm>

#include "com/ObjectForms.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

namespace {

/// Overwrites the value with a string; false when memory ran out, with no value then.
bool MakeText(std::u16string_view text, VARIANT& value) noexcept
{
    VariantInit(&value);
    const BSTR copy = AllocateString(text);
    if (copy == nullptr) {
        return false;
    }
    value.vt = VT_BSTR;
    value.bstrVal = copy;
    return true;
}

}  // namespace

HRESULT CNameEnumerator::QueryOwnInterface(REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    if (!(iid == IID_IUnknown) && !(iid == IID_IEnumVARIANT)) {
        return E_NOINTERFACE;
    }
    *out = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
}

std::size_t CNameEnumerator::StepOf(ULONG count) const noexcept
{
    return std::min<std::size_t>(count, m_names->Size() - m_place);
}

HRESULT CNameEnumerator::Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept
{
    if (fetched != nullptr) {
        *fetched = 0;
    } else if (count != 1) {
        return E_INVALIDARG;
    }
    if (values == nullptr) {
        return E_POINTER;
    }
    const CriticalSectionLock lock(m_lock);
    const std::size_t step = StepOf(count);
    for (std::size_t i = 0; i < step; ++i) {
        if (!MakeText(m_names->At(m_place + i), values[i])) {
            std::for_each_n(values, i, [](VARIANT& value) { VariantClear(&value); });
            return E_OUTOFMEMORY;
        }
    }
    m_place += step;
    if (fetched != nullptr) {
        *fetched = static_cast<ULONG>(step);
    }
    return step == count ? S_OK : S_FALSE;
}

HRESULT CNameEnumerator::Skip(ULONG count) noexcept
{
    const CriticalSectionLock lock(m_lock);
    const std::size_t step = StepOf(count);
    m_place += step;
    return step == count ? S_OK : S_FALSE;
}

HRESULT CNameEnumerator::Reset() noexcept
{
    const CriticalSectionLock lock(m_lock);
    m_place = 0;
    return S_OK;
}

HRESULT CNameEnumerator::Clone(IEnumVARIANT** copy) noexcept
{
    if (copy == nullptr) {
        return E_POINTER;
    }
    const CriticalSectionLock lock(m_lock);
    ComPtr<CNameEnumerator> created;
    const HRESULT code = CreatePlain(created, m_names, m_place);
    *copy = created.Detach();
    return code;
}

}  // namespace zupm
