// Calls by name, as scripts make them.
#include <utility>

#include "tests/faults/FailingMemoryTest.h"

namespace zupm::test {

namespace {

constexpr DISPID kSoftwareIdOfProduct = 1;
constexpr DISPID kGetSectionSetting = 6;
constexpr DISPID kPutSectionSetting = 7;

/// Arguments last to first, as the call takes them.
HRESULT Invoke(World& world, DISPID member, WORD flags, VARIANT* arguments, UINT count, VARIANT* value)
{
    DISPPARAMS parameters{arguments, nullptr, count, 0};
    EXCEPINFO exception{};
    UINT badArgument = 0;
    const HRESULT invoked =
        world.product.Object()->Invoke(member, IID_NULL, 0x0409, flags, &parameters, value, &exception, &badArgument);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    return invoked == DISP_E_EXCEPTION ? exception.scode : invoked;
}

VARIANT Argument(const Bstr& text)
{
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = text.Get();
    return argument;
}

HRESULT GetIdOfName(World& world)
{
    OLECHAR name[] = {u'G', u'e', u't', u'S', u'e', u't', u't', u'i', u'n', u'g', 0};
    LPOLESTR names[] = {name};
    DISPID id = DISPID_UNKNOWN;
    return world.product.Object()->GetIDsOfNames(IID_NULL, names, 1, 0x0409, &id);
}

/// Takes the value of a call that succeeded over into the world's slot; other values mean nothing.
HRESULT Keep(World& world, HRESULT code, VARIANT& value)
{
    if (code >= 0 && value.vt == VT_BSTR) {
        std::swap(*world.text.Slot(), value.bstrVal);
    }
    static_cast<void>(VariantClear(&value));
    return code;
}

HRESULT GetProperty(World& world)
{
    VARIANT value{};
    const HRESULT code = Invoke(world, kSoftwareIdOfProduct, DISPATCH_PROPERTYGET, nullptr, 0, &value);
    return Keep(world, code, value);
}

HRESULT CallForResult(World& world)
{
    VARIANT arguments[] = {Argument(world.setting), Argument(world.section)};
    VARIANT value{};
    const HRESULT code = Invoke(world, kGetSectionSetting, DISPATCH_METHOD, arguments, 2, &value);
    return Keep(world, code, value);
}

/// A number where the member wants a text, which takes a new string.
HRESULT PutNumber(World& world)
{
    VARIANT number{};
    number.vt = VT_I4;
    number.lVal = 1234567890;
    VARIANT arguments[] = {number, Argument(world.setting), Argument(world.section)};
    return Invoke(world, kPutSectionSetting, DISPATCH_METHOD, arguments, 3, nullptr);
}

// --- what is left ----------------------------------------------------------------------------------------------------

void NothingChanged(World& world, const Sight& before)
{
    EXPECT_TRUE(world.text.Untouched() || world.text.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

void Nothing(World&) {}

void TheIdIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kProduct);
}

/// A value that found no memory is null, which may arrive as the empty string.
void TheValueIsThereOrNull(World& world)
{
    EXPECT_TRUE(world.text.Text().empty() || world.text.Text() == kValue);
}

void TheNumberIsTheValue(World& world)
{
    EXPECT_EQ(world.product.Get(kSection, kSetting), (TextResult{0, u"1234567890"}));
}

const std::vector<Operation> kOperations = {
    {.name = "GetIDsOfNames",
     .run = GetIdOfName,
     .codes = {},
     .afterFailure = NothingChanged,
     .afterSuccess = Nothing,
     .isMember = false,
     .fewestFailures = 0},
    {.name = "PropertyGet",
     .run = GetProperty,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = NothingChanged,
     .afterSuccess = TheIdIsThere,
     .fewestFailures = 2},
    {.name = "MethodWithAResult",
     .run = CallForResult,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = NothingChanged,
     .afterSuccess = TheValueIsThereOrNull,
     .fewestFailures = 4},
    {.name = "MethodWithAConvertedArgument",
     .run = PutNumber,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = NothingChanged,
     .afterSuccess = TheNumberIsTheValue,
     .isMember = false,  // memory may run out before the member is reached
     .fewestFailures = 4},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ByName, FailingMemory, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
