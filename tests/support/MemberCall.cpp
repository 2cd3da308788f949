#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

/// A value or exception that Invoke fills; what it holds goes with it.
struct OwnedVariant {
    OwnedVariant() { VariantInit(&value); }
    ~OwnedVariant() { static_cast<void>(VariantClear(&value)); }
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;

    VARIANT value{};
};

/// The text of a string that it frees.
std::u16string TakeText(BSTR text)
{
    Bstr owner;
    *owner.Put() = text;
    return owner.Text();
}

void ReadException(EXCEPINFO& exception, CallOutcome& outcome)
{
    if (exception.pfnDeferredFillIn != nullptr) {
        static_cast<void>(exception.pfnDeferredFillIn(&exception));
    }
    outcome.code = exception.scode;
    outcome.description = TakeText(exception.bstrDescription);
    outcome.source = TakeText(exception.bstrSource);
    static_cast<void>(TakeText(exception.bstrHelpFile));
}

void ReadValue(const VARIANT& value, CallOutcome& outcome)
{
    outcome.type = value.vt;
    if (value.vt == VT_BSTR) {
        outcome.text = Text(value.bstrVal);
    } else if (value.vt == VT_I4) {
        outcome.number = value.lVal;
    } else if (value.vt == VT_UNKNOWN) {
        outcome.object = ComPtr<IUnknown>(value.punkVal);
    } else if (value.vt == VT_DISPATCH) {
        outcome.object = ComPtr<IUnknown>(static_cast<IUnknown*>(value.pdispVal));
    }
}

}  // namespace

MemberCall::MemberCall(IDispatch* object, std::u16string_view name) : m_object(object), m_name(name) {}

MemberCall& MemberCall::Raw(const VARIANT& argument)
{
    m_arguments.push_back(argument);
    return *this;
}

MemberCall& MemberCall::In(const Bstr& text)
{
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = nullptr;
    if (text.Get() != nullptr) {
        argument.bstrVal = m_strings.emplace_back(text.Text()).Get();
    }
    return Raw(argument);
}

MemberCall& MemberCall::In(LONG number)
{
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = number;
    return Raw(argument);
}

MemberCall& MemberCall::In(IUnknown* object)
{
    VARIANT argument{};
    argument.vt = VT_UNKNOWN;
    argument.punkVal = object;
    return Raw(argument);
}

MemberCall& MemberCall::ByReference(VARTYPE type, void* slot)
{
    VARIANT argument{};
    argument.vt = static_cast<VARTYPE>(VT_BYREF | type);
    argument.byref = slot;
    return Raw(argument);
}

MemberCall& MemberCall::Out(OutText& slot)
{
    return ByReference(VT_BSTR, slot.Slot());
}

MemberCall& MemberCall::Out(OutNumber& slot)
{
    return ByReference(VT_I4, slot.Slot());
}

MemberCall& MemberCall::Out(OutObject<IUnknown>& slot)
{
    return ByReference(VT_UNKNOWN, slot.Slot());
}

MemberCall& MemberCall::Out(OutObject<IPolicyTask>& slot)
{
    return ByReference(VT_DISPATCH, slot.Slot());
}

MemberCall& MemberCall::Out(OutObject<IPolicyProduct>& slot)
{
    return ByReference(VT_DISPATCH, slot.Slot());
}

MemberCall& MemberCall::Out(OutObject<IPolicyNames>& slot)
{
    return ByReference(VT_DISPATCH, slot.Slot());
}

CallOutcome MemberCall::Call()
{
    return Invoke(DISPATCH_METHOD, false);
}

CallOutcome MemberCall::ForResult()
{
    return Invoke(DISPATCH_METHOD, true);
}

CallOutcome MemberCall::Get()
{
    return Invoke(DISPATCH_PROPERTYGET, true);
}

CallOutcome MemberCall::Put()
{
    return Invoke(DISPATCH_PROPERTYPUT, false);
}

CallOutcome MemberCall::Invoke(WORD flags, bool wantsResult)
{
    CallOutcome outcome;
    const DISPID member = IdOf(m_object, m_name);
    if (member == DISPID_UNKNOWN) {
        outcome.invoked = outcome.code = DISP_E_UNKNOWNNAME;
        return outcome;
    }
    std::vector<VARIANT> arguments(m_arguments.rbegin(), m_arguments.rend());
    DISPID putName = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (flags == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &putName;
        parameters.cNamedArgs = 1;
    }
    OwnedVariant value;
    EXCEPINFO exception{};
    UINT badArgument = 0;
    outcome.invoked = m_object->Invoke(member, IID_NULL, 0x0409, flags, &parameters,
                                       wantsResult ? &value.value : nullptr, &exception, &badArgument);
    outcome.code = outcome.invoked;
    if (outcome.invoked == DISP_E_EXCEPTION) {
        ReadException(exception, outcome);
    }
    ReadValue(value.value, outcome);
    return outcome;
}

DISPID MemberCall::IdOf(IDispatch* object, std::u16string_view name)
{
    const Bstr text(name);
    LPOLESTR names[] = {text.Get()};
    DISPID id = DISPID_UNKNOWN;
    return object->GetIDsOfNames(IID_NULL, names, 1, 0x0409, &id) == S_OK ? id : DISPID_UNKNOWN;
}

}  // namespace zupm::test
