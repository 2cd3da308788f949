#include "com/win32/ByReference.h"

#include <oleauto.h>

#include <algorithm>

namespace zupm::win32 {

namespace {

/// The type that a slot is passed as; VT_EMPTY for a parameter that is no slot.
VARTYPE SlotType(ParameterType type) noexcept
{
    switch (type) {
        case ParameterType::StringSlot:
            return VT_BSTR;
        case ParameterType::NumberSlot:
            return VT_I4;
        case ParameterType::ObjectSlot:
            return VT_UNKNOWN;
        case ParameterType::DispatchSlot:
            return VT_DISPATCH;
        default:
            return VT_EMPTY;
    }
}

/// Moves a value into a reference of its own type; an object slot's old pointer is not released.
HRESULT MoveInto(const VARIANTARG& target, VARIANT& value) noexcept
{
    if (target.vt == (VT_BYREF | VT_VARIANT)) {
        if (const HRESULT cleared = VariantClear(target.pvarVal); FAILED(cleared)) {
            return cleared;
        }
        *target.pvarVal = value;
    } else if (target.vt == (VT_BYREF | VT_BSTR) && value.vt == VT_BSTR) {
        SysFreeString(*target.pbstrVal);
        *target.pbstrVal = value.bstrVal;
    } else if (target.vt == (VT_BYREF | VT_I4) && value.vt == VT_I4) {
        *target.plVal = value.lVal;
    } else if (target.vt == (VT_BYREF | VT_UNKNOWN) && (value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH)) {
        *target.ppunkVal = value.punkVal;
    } else if (target.vt == (VT_BYREF | VT_DISPATCH) && value.vt == VT_DISPATCH) {
        *target.ppdispVal = value.pdispVal;
    } else {
        return DISP_E_TYPEMISMATCH;
    }
    VariantInit(&value);
    return S_OK;
}

/// True for a reference that a slot of the type may be given as.
bool Takes(const VARIANTARG& target, ParameterType type) noexcept
{
    const VARTYPE slot = SlotType(type);
    const bool isObject = slot == VT_UNKNOWN || slot == VT_DISPATCH;
    return target.byref != nullptr &&
           (target.vt == (VT_BYREF | VT_VARIANT) || target.vt == (VT_BYREF | slot) ||
            (isObject && (target.vt == (VT_BYREF | VT_UNKNOWN) || target.vt == (VT_BYREF | VT_DISPATCH))));
}

}  // namespace

ByReferenceArguments::ByReferenceArguments(const Member* member, const DISPPARAMS& parameters) noexcept
    : m_parameters(parameters)
{
    const std::size_t count = parameters.cArgs;
    if (member == nullptr || parameters.cNamedArgs != 0 || count > member->parameters.size()) {
        return;
    }
    std::copy_n(parameters.rgvarg, count, m_arguments.begin());
    m_parameters.rgvarg = m_arguments.data();
    const bool namesResult = count != 0 && count == member->parameters.size() && member->parameters.back().isResult;
    for (std::size_t i = 0; i < count - (namesResult ? 1 : 0); ++i) {
        // The last argument comes first.
        SubstituteArgument(count - 1 - i, member->parameters[i].type);
    }
    if (namesResult) {
        m_resultType = member->parameters.back().type;
        m_resultSlot = parameters.rgvarg;
        ++m_parameters.rgvarg;
        --m_parameters.cArgs;
    }
}

ByReferenceArguments::~ByReferenceArguments()
{
    std::for_each_n(m_substitutes.begin(), m_count, [](Substitute& row) { VariantClear(&row.value); });
    VariantClear(&m_result);
}

HRESULT ByReferenceArguments::Check() const noexcept
{
    return m_resultSlot == nullptr || Takes(*m_resultSlot, m_resultType) ? S_OK : DISP_E_TYPEMISMATCH;
}

void ByReferenceArguments::SubstituteArgument(std::size_t index, ParameterType type) noexcept
{
    VARIANTARG& argument = m_arguments[index];
    const VARTYPE slot = SlotType(type);
    if (slot == VT_EMPTY || argument.vt != (VT_BYREF | VT_VARIANT)) {
        return;
    }
    Substitute& row = m_substitutes[m_count++];
    row.variable = argument.pvarVal;
    VariantInit(&row.value);
    row.value.vt = slot;
    argument.vt = static_cast<VARTYPE>(VT_BYREF | slot);
    argument.byref = &row.value.lVal;
}

HRESULT ByReferenceArguments::CopyBack() noexcept
{
    HRESULT first = StoreResult();
    for (std::size_t i = 0; i < m_count; ++i) {
        Substitute& row = m_substitutes[i];
        PreferDispatch(row.value);
        const HRESULT cleared = VariantClear(row.variable);
        if (SUCCEEDED(cleared)) {
            *row.variable = row.value;
            VariantInit(&row.value);
        } else if (SUCCEEDED(first)) {
            first = cleared;
        }
    }
    return first;
}

HRESULT ByReferenceArguments::StoreResult() noexcept
{
    if (m_resultSlot == nullptr) {
        return S_OK;
    }
    PreferDispatch(m_result);
    return MoveInto(*m_resultSlot, m_result);
}

void PreferDispatch(VARIANT& value) noexcept
{
    if (value.vt != VT_UNKNOWN || value.punkVal == nullptr) {
        return;
    }
    IDispatch* dispatch = nullptr;
    if (SUCCEEDED(value.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)))) {
        value.punkVal->Release();
        value.vt = VT_DISPATCH;
        value.pdispVal = dispatch;
    }
}

}  // namespace zupm::win32
