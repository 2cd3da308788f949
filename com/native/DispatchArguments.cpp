#include "com/native/DispatchArguments.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <utility>

#include "com/native/VariantConversion.h"

namespace zupm {
namespace {

constexpr bool IsInput(ParameterType type)
{
    return type == ParameterType::String || type == ParameterType::Number || type == ParameterType::Object;
}

constexpr bool IsObjectSlot(ParameterType type)
{
    return type == ParameterType::ObjectSlot || type == ParameterType::DispatchSlot;
}

/// Takes the object out of a temporary; its reference goes along.
IUnknown* Detach(std::array<std::byte, sizeof(void*)>& object) noexcept
{
    auto* taken = std::bit_cast<IUnknown*>(object);
    object = {};
    return taken;
}

void ReleaseObject(IUnknown* object) noexcept
{
    if (object != nullptr) {
        object->Release();
    }
}

/// Turns an object, with its reference, into its IDispatch; null when it is null or has none.
IDispatch* ToDispatch(IUnknown* object) noexcept
{
    void* dispatch = nullptr;
    if (object != nullptr && FAILED(object->QueryInterface(IID_IDispatch, &dispatch))) {
        dispatch = nullptr;
    }
    return static_cast<IDispatch*>(dispatch);
}

/// An object as scripts want it: as IDispatch when it offers that. Takes the object's reference.
VARIANT ObjectVariant(IUnknown* object) noexcept
{
    VARIANT value{};
    IDispatch* dispatch = ToDispatch(object);
    if (dispatch != nullptr || object == nullptr) {
        value.vt = VT_DISPATCH;
        value.pdispVal = dispatch;
        ReleaseObject(object);
    } else {
        value.vt = VT_UNKNOWN;
        value.punkVal = object;
    }
    return value;
}

/// The caller's own slot of a by-reference argument, when the member can write there itself.
void* DirectSlot(ParameterType type, const VARIANT& argument) noexcept
{
    switch (argument.vt) {
        case VT_BYREF | VT_BSTR:
            return type == ParameterType::StringSlot ? argument.byref : nullptr;
        case VT_BYREF | VT_I4:
        case VT_BYREF | VT_INT:
            return type == ParameterType::NumberSlot ? argument.byref : nullptr;
        case VT_BYREF | VT_UNKNOWN:
            return IsObjectSlot(type) ? argument.byref : nullptr;
        case VT_BYREF | VT_DISPATCH:
            return type == ParameterType::DispatchSlot ? argument.byref : nullptr;
        default:
            return nullptr;
    }
}

/// The place of the parameter that a call with one argument too few leaves out; nothing when the count fits.
HRESULT FindLeftOut(std::span<const Parameter> parameters, std::size_t given, std::optional<std::size_t>& leftOut)
{
    if (given == parameters.size()) {
        return S_OK;
    }
    const auto result =
        std::find_if(parameters.begin(), parameters.end(), [](const Parameter& p) { return p.isResult; });
    if (given + 1 != parameters.size() || result == parameters.end()) {
        return DISP_E_BADPARAMCOUNT;
    }
    leftOut = static_cast<std::size_t>(result - parameters.begin());
    return S_OK;
}

}  // namespace

DispatchArguments::~DispatchArguments()
{
    for (std::size_t place = 0; place < m_count; ++place) {
        SysFreeString(m_temporaries[place].string);
        ReleaseObject(Detach(m_temporaries[place].object));
    }
}

HRESULT DispatchArguments::Bind(const Member& member, const DISPPARAMS& parameters, VARIANT* result,
                                UINT& badArgument) noexcept
{
    std::optional<std::size_t> leftOut;
    const HRESULT counted = FindLeftOut(member.parameters, parameters.cArgs, leftOut);
    if (FAILED(counted)) {
        return counted;
    }
    m_count = member.parameters.size();
    UINT index = parameters.cArgs;
    for (std::size_t place = 0; place < m_count; ++place) {
        const ParameterType type = member.parameters[place].type;
        if (place == leftOut) {
            m_temporaries[place].variant = result;
            UseTemporary(place, type);
            continue;
        }
        const VARIANT& argument = parameters.rgvarg[--index];
        m_temporaries[place].index = index;
        const HRESULT bound = IsInput(type) ? BindInput(place, type, argument) : BindOutput(place, type, argument);
        if (FAILED(bound)) {
            badArgument = index;
            return bound;
        }
    }
    return S_OK;
}

HRESULT DispatchArguments::BindInput(std::size_t place, ParameterType type, const VARIANT& argument) noexcept
{
    VARIANT value{};
    const HRESULT read = ReadThroughReferences(argument, value);
    if (FAILED(read)) {
        return read;
    }
    switch (type) {
        case ParameterType::String:
            return ToText(value, m_values[place].string, m_temporaries[place].string);
        case ParameterType::Number:
            return ToNumber(value, m_values[place].number);
        default:
            return ToObject(value, m_values[place].object);
    }
}

HRESULT DispatchArguments::BindOutput(std::size_t place, ParameterType type, const VARIANT& argument) noexcept
{
    if (void* slot = DirectSlot(type, argument); slot != nullptr) {
        m_values[place].slot = slot;
        return S_OK;
    }
    if (argument.vt == (VT_BYREF | VT_VARIANT) && argument.pvarVal != nullptr) {
        m_temporaries[place].variant = argument.pvarVal;
    } else if (argument.vt == (VT_BYREF | VT_DISPATCH) && argument.ppdispVal != nullptr && IsObjectSlot(type)) {
        m_temporaries[place].dispatch = argument.ppdispVal;
    } else {
        return DISP_E_TYPEMISMATCH;
    }
    UseTemporary(place, type);
    return S_OK;
}

void DispatchArguments::UseTemporary(std::size_t place, ParameterType type) noexcept
{
    Temporary& temporary = m_temporaries[place];
    temporary.type = type;
    if (type == ParameterType::StringSlot) {
        m_values[place].slot = &temporary.string;
    } else if (type == ParameterType::NumberSlot) {
        m_values[place].slot = &temporary.number;
    } else {
        m_values[place].slot = temporary.object.data();
    }
}

VARIANT DispatchArguments::TakeValue(Temporary& temporary) noexcept
{
    VARIANT value{};
    if (temporary.type == ParameterType::StringSlot) {
        value.vt = VT_BSTR;
        value.bstrVal = std::exchange(temporary.string, nullptr);
    } else if (temporary.type == ParameterType::NumberSlot) {
        value.vt = VT_I4;
        value.lVal = temporary.number;
    } else {
        value = ObjectVariant(Detach(temporary.object));
    }
    return value;
}

HRESULT DispatchArguments::StoreOutputs(UINT& badArgument) noexcept
{
    for (std::size_t place = 0; place < m_count; ++place) {
        Temporary& temporary = m_temporaries[place];
        if (temporary.variant != nullptr) {
            const VARIANT value = TakeValue(temporary);
            static_cast<void>(VariantClear(temporary.variant));
            *temporary.variant = value;
        } else if (temporary.dispatch != nullptr) {
            IUnknown* object = Detach(temporary.object);
            *temporary.dispatch = ToDispatch(object);
            const bool lost = object != nullptr && *temporary.dispatch == nullptr;
            ReleaseObject(object);
            if (lost) {
                badArgument = temporary.index;
                return DISP_E_TYPEMISMATCH;
            }
        }
    }
    return S_OK;
}

}  // namespace zupm
