#include "tests/comrt/ToyInterface.h"
#include "zuPolicyManager/zuPolicyManager.h"

#include <algorithm>

namespace zupm::test {
namespace {

Toy& Self(IUnknown* self)
{
    Toy& toy = *static_cast<Toy*>(self);
    ++toy.calls;
    return toy;
}

/// Stores as the component's members do: what the slot holds is freed.
void Store(void* slot, std::u16string_view text)
{
    BSTR& string = *static_cast<BSTR*>(slot);
    SysFreeString(string);
    string = NewString(text);
}

HRESULT Join(IUnknown* self, const Argument* arguments)
{
    Self(self);
    Store(arguments[2].slot, Text(arguments[0].string) + u"|" + Text(arguments[1].string));
    return S_OK;
}

HRESULT Add(IUnknown* self, const Argument* arguments)
{
    Self(self);
    *static_cast<LONG*>(arguments[2].slot) = arguments[0].number + arguments[1].number;
    return S_OK;
}

HRESULT GetCount(IUnknown* self, const Argument* arguments)
{
    *static_cast<LONG*>(arguments[0].slot) = Self(self).stored;
    return S_OK;
}

HRESULT PutCount(IUnknown* self, const Argument* arguments)
{
    Self(self).stored = arguments[0].number;
    return S_OK;
}

HRESULT Echo(IUnknown* self, const Argument* arguments)
{
    Self(self).echoed = arguments[0].object;
    if (arguments[0].object != nullptr) {
        arguments[0].object->AddRef();
    }
    *static_cast<IUnknown**>(arguments[1].slot) = arguments[0].object;
    return S_OK;
}

/// Hands out the toy as what the slot is for: callers only use the part that every dispatch interface has.
HRESULT MakeTask(IUnknown* self, const Argument* arguments)
{
    Self(self).AddRef();
    *static_cast<IPolicyTask**>(arguments[0].slot) = reinterpret_cast<IPolicyTask*>(self);
    return S_OK;
}

HRESULT Pair(IUnknown* self, const Argument* arguments)
{
    Self(self);
    Store(arguments[0].slot, u"first");
    Store(arguments[1].slot, u"second");
    return S_OK;
}

HRESULT Fail(IUnknown* self, const Argument* arguments)
{
    Self(self);
    OLECHAR description[] = u"It failed on purpose.";
    OLECHAR source[] = u"Toy";
    ICreateErrorInfo* writer = nullptr;
    IErrorInfo* info = nullptr;
    static_cast<void>(CreateErrorInfo(&writer));
    static_cast<void>(writer->SetDescription(description));
    static_cast<void>(writer->SetSource(source));
    static_cast<void>(writer->SetHelpContext(5));
    static_cast<void>(writer->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)));
    static_cast<void>(SetErrorInfo(0, info));
    info->Release();
    writer->Release();
    return arguments[0].number;
}

HRESULT Plain(IUnknown* self, const Argument* arguments)
{
    Toy& toy = Self(self);
    toy.plain->AddRef();
    *static_cast<IUnknown**>(arguments[0].slot) = toy.plain;
    return S_OK;
}

HRESULT FailLate(IUnknown* self, const Argument* arguments)
{
    Toy& toy = Self(self);
    Store(arguments[1].slot, u"written all the same");
    toy.AddRef();
    *static_cast<IUnknown**>(arguments[2].slot) = &toy;
    return -1201;
}

HRESULT Nothing(IUnknown* self, const Argument* /*arguments*/)
{
    Self(self);
    return S_FALSE;
}

HRESULT Numbers(IUnknown* self, const Argument* arguments)
{
    *static_cast<LONG*>(arguments[0].slot) = ++Self(self).stored;
    return S_OK;
}

HRESULT PutText(IUnknown* self, const Argument* arguments)
{
    Self(self).written = Text(arguments[0].string);
    return S_OK;
}

using enum ParameterType;
constexpr Parameter kJoinParameters[] = {{u"left", String}, {u"right", String}, {u"joined", StringSlot, true}};
constexpr Parameter kAddParameters[] = {
    {u"left", ParameterType::Number}, {u"right", ParameterType::Number}, {u"sum", NumberSlot, true}};
constexpr Parameter kGetParameters[] = {{u"value", NumberSlot, true}};
constexpr Parameter kPutParameters[] = {{u"newValue", ParameterType::Number}};
constexpr Parameter kEchoParameters[] = {{u"object", ParameterType::Object}, {u"same", ObjectSlot, true}};
constexpr Parameter kTaskParameters[] = {{u"task", DispatchSlot, true, &IID_IDispatch}};
constexpr Parameter kPairParameters[] = {{u"first", StringSlot}, {u"second", StringSlot}};
constexpr Parameter kFailParameters[] = {{u"code", ParameterType::Number}};
constexpr Parameter kPlainParameters[] = {{u"plain", ObjectSlot, true}};
constexpr Parameter kLateParameters[] = {{u"in", String}, {u"text", StringSlot}, {u"object", ObjectSlot, true}};
constexpr Parameter kNumbersParameters[] = {{u"number", NumberSlot}};
constexpr Parameter kTextParameters[] = {{u"text", String}};

constexpr Member kMembers[] = {
    {u"Join", kJoin, MemberKind::Method, kJoinParameters, "", &Join},
    {u"Add", kAdd, MemberKind::Method, kAddParameters, "", &Add},
    {u"Count", kCount, MemberKind::PropertyGet, kGetParameters, "", &GetCount},
    {u"Count", kCount, MemberKind::PropertyPut, kPutParameters, "", &PutCount},
    {u"Echo", kEcho, MemberKind::Method, kEchoParameters, "", &Echo},
    {u"MakeTask", kMakeTask, MemberKind::Method, kTaskParameters, "", &MakeTask},
    {u"Pair", kPair, MemberKind::Method, kPairParameters, "", &Pair},
    {u"Fail", kFail, MemberKind::Method, kFailParameters, "", &Fail},
    {u"Plain", kPlain, MemberKind::Method, kPlainParameters, "", &Plain},
    {u"FailLate", kFailLate, MemberKind::Method, kLateParameters, "", &FailLate},
    {u"Nothing", kNothing, MemberKind::Method, {}, "", &Nothing},
    {u"Numbers", kNumbers, MemberKind::Method, kNumbersParameters, "", &Numbers},
    {u"WriteOnly", kWriteOnly, MemberKind::PropertyPut, kTextParameters, "", &PutText},
};

constexpr IID kToyInterface{0x5E0E1000, 0x0001, 0x4001, {0x80, 0, 0, 0, 0, 0, 0, 9}};
constexpr InterfaceDescription kDescription{kToyInterface, u"IToy", kMembers};

}  // namespace

const InterfaceDescription& ToyInterface()
{
    return kDescription;
}

HRESULT Toy::QueryInterface(REFIID iid, void** out)
{
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == kToyInterface;
    *out = known ? static_cast<IDispatch*>(this) : nullptr;
    if (!known) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

HRESULT Toy::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info)
{
    return DispatchGetTypeInfo(kDescription, index, locale, info);
}

HRESULT Toy::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID locale, DISPID* ids)
{
    return DispatchGetIDsOfNames(kDescription, names, count, locale, ids);
}

HRESULT Toy::Invoke(DISPID member, REFIID /*reserved*/, LCID locale, WORD flags, DISPPARAMS* parameters,
                    VARIANT* result, EXCEPINFO* exception, UINT* badArgument)
{
    return DispatchInvoke(kDescription, this, member, locale, flags, parameters, result, exception, badArgument);
}

VARIANT Empty(VARTYPE type)
{
    VARIANT value{};
    value.vt = type;
    return value;
}

VARIANT Number(LONG number)
{
    VARIANT value = Empty(VT_I4);
    value.lVal = number;
    return value;
}

VARIANT Text(const Bstr& text)
{
    VARIANT value = Empty(VT_BSTR);
    value.bstrVal = text.Get();
    return value;
}

VARIANT Object(IUnknown* object)
{
    VARIANT value = Empty(VT_UNKNOWN);
    value.punkVal = object;
    return value;
}

VARIANT Reference(VARTYPE type, void* place)
{
    VARIANT value = Empty(static_cast<VARTYPE>(VT_BYREF | type));
    value.byref = place;
    return value;
}

ToyCall::ToyCall(Toy& toy, DISPID member, WORD flags, std::initializer_list<VARIANT> arguments)
{
    std::vector<VARIANT> reversed(arguments);
    std::reverse(reversed.begin(), reversed.end());
    DISPID put = DISPID_PROPERTYPUT;
    const bool named = (flags & DISPATCH_PROPERTYPUT) != 0;
    DISPPARAMS parameters{reversed.data(), named ? &put : nullptr, static_cast<UINT>(reversed.size()), named ? 1u : 0u};
    // The callee initialises the value, whatever it holds.
    value.vt = VT_BSTR;
    value.bstrVal = reinterpret_cast<BSTR>(std::uintptr_t{0x10});
    result = toy.Invoke(member, IID_NULL, 0, flags, &parameters, &value, &exception, &badArgument);
}

ToyCall::~ToyCall()
{
    static_cast<void>(VariantClear(&value));
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace zupm::test
