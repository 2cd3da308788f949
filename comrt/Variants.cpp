#include "zuPolicyManager/zucomrt.h"

namespace {

constexpr HRESULT kBadVariantType = static_cast<HRESULT>(0x80020008u);

/// Whether a type without VT_BYREF is one that a variant may hold by value.
constexpr bool IsValueType(VARTYPE type)
{
    switch (type) {
        case VT_EMPTY:
        case VT_NULL:
        case VT_I2:
        case VT_I4:
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_ERROR:
        case VT_BOOL:
        case VT_UNKNOWN:
        case VT_I1:
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_I8:
        case VT_UI8:
        case VT_INT:
        case VT_UINT:
            return true;
        default:
            return false;
    }
}

void FreeContents(const VARIANT& value) noexcept
{
    if (value.vt == VT_BSTR) {
        SysFreeString(value.bstrVal);
    } else if (value.vt == VT_UNKNOWN && value.punkVal != nullptr) {
        value.punkVal->Release();
    } else if (value.vt == VT_DISPATCH && value.pdispVal != nullptr) {
        value.pdispVal->Release();
    }
}

}  // namespace

void VariantInit(VARIANT* value) noexcept
{
    if (value != nullptr) {
        *value = VARIANT{};
    }
}

HRESULT VariantClear(VARIANT* value) noexcept
{
    if (value == nullptr) {
        return E_INVALIDARG;
    }
    const bool byReference = (value->vt & VT_BYREF) != 0;
    if (!byReference && !IsValueType(value->vt)) {
        return kBadVariantType;
    }
    // Emptied before anything is released: a release may run code that looks at the variant.
    const VARIANT old = *value;
    *value = VARIANT{};
    FreeContents(old);
    return S_OK;
}
