// Which member a call reaches, and what a failure reports.
#include <gtest/gtest.h>

#include "tests/comrt/ToyInterface.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/Outs.h"

namespace zupm::test {
namespace {

constexpr WORD kMethodOrGet = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

TEST(DispatchCall, AMemberIsReachedByItsKind)
{
    struct Row {
        DISPID member;
        WORD flags;
        HRESULT result;
    };
    constexpr Row kRows[] = {
        {kNothing, DISPATCH_METHOD, S_FALSE},
        {kNothing, kMethodOrGet, S_FALSE},
        {kNothing, DISPATCH_PROPERTYGET, DISP_E_MEMBERNOTFOUND},
        {kNothing, DISPATCH_PROPERTYPUT, DISP_E_MEMBERNOTFOUND},
        {kCount, DISPATCH_PROPERTYGET, S_OK},
        {kCount, kMethodOrGet, S_OK},
        {kCount, DISPATCH_METHOD, DISP_E_MEMBERNOTFOUND},
        {kCount, DISPATCH_PROPERTYPUTREF, DISP_E_MEMBERNOTFOUND},
        {kCount, 0, DISP_E_MEMBERNOTFOUND},
        {kWriteOnly, kMethodOrGet, DISP_E_MEMBERNOTFOUND},
        {0, kMethodOrGet, DISP_E_MEMBERNOTFOUND},
        {-1, kMethodOrGet, DISP_E_MEMBERNOTFOUND},
        {1000, kMethodOrGet, DISP_E_MEMBERNOTFOUND},
    };
    for (const Row& row : kRows) {
        Toy toy;
        EXPECT_EQ(ToyCall(toy, row.member, row.flags, {}).result, row.result) << row.member << ' ' << row.flags;
    }
}

TEST(DispatchCall, APropertyIsPutWithAndWithoutTheNameOfItsValue)
{
    Toy toy;
    EXPECT_EQ(ToyCall(toy, kCount, DISPATCH_PROPERTYPUT, {Number(5)}).result, S_OK);
    EXPECT_EQ(toy.stored, 5);
    VARIANT value = Number(6);
    DISPPARAMS unnamed{&value, nullptr, 1, 0};
    EXPECT_EQ(toy.Invoke(kCount, IID_NULL, 0, DISPATCH_PROPERTYPUT, &unnamed, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(toy.stored, 6);
    const ToyCall read(toy, kCount, DISPATCH_PROPERTYGET, {});
    EXPECT_EQ(read.value.vt, VT_I4);
    EXPECT_EQ(read.value.lVal, 6);
}

TEST(DispatchCall, OtherNamedArgumentsAreRefused)
{
    Toy toy;
    VARIANT values[] = {Number(1), Number(2)};
    DISPID names[] = {0, DISPID_PROPERTYPUT};
    DISPPARAMS wrongName{values, names, 1, 1};
    EXPECT_EQ(toy.Invoke(kCount, IID_NULL, 0, DISPATCH_PROPERTYPUT, &wrongName, nullptr, nullptr, nullptr),
              DISP_E_NONAMEDARGS);
    DISPPARAMS twoNames{values, names, 2, 2};
    EXPECT_EQ(toy.Invoke(kCount, IID_NULL, 0, DISPATCH_PROPERTYPUT, &twoNames, nullptr, nullptr, nullptr),
              DISP_E_NONAMEDARGS);
    DISPPARAMS method{values, names, 2, 1};
    EXPECT_EQ(toy.Invoke(kAdd, IID_NULL, 0, DISPATCH_METHOD, &method, nullptr, nullptr, nullptr), DISP_E_NONAMEDARGS);
    DISPPARAMS putNameOnMethod{values, names + 1, 2, 1};
    EXPECT_EQ(toy.Invoke(kAdd, IID_NULL, 0, DISPATCH_METHOD, &putNameOnMethod, nullptr, nullptr, nullptr),
              DISP_E_NONAMEDARGS);
    EXPECT_EQ(toy.calls, 0);
}

TEST(DispatchCall, AWrongNumberOfArgumentsIsRefused)
{
    Toy toy;
    const VARIANT one = Number(1);
    LONG sum = 0;
    const VARIANT slot = Reference(VT_I4, &sum);
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {one}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {one, one, slot, one}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(ToyCall(toy, kNothing, DISPATCH_METHOD, {one}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(ToyCall(toy, kCount, DISPATCH_PROPERTYPUT, {one, one}).result, DISP_E_BADPARAMCOUNT);
    // Neither of its outputs is the result, so none may be left out.
    EXPECT_EQ(ToyCall(toy, kPair, DISPATCH_METHOD, {Reference(VT_BSTR, &sum)}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(toy.calls, 0);
}

TEST(DispatchCall, MissingParametersAreInvalid)
{
    Toy toy;
    const auto invoke = [&](DISPPARAMS* parameters) {
        return toy.Invoke(kNothing, IID_NULL, 0, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(invoke(nullptr), E_INVALIDARG);
    DISPPARAMS noArguments{nullptr, nullptr, 1, 0};
    EXPECT_EQ(invoke(&noArguments), E_INVALIDARG);
    DISPPARAMS noNames{nullptr, nullptr, 0, 1};
    EXPECT_EQ(invoke(&noNames), E_INVALIDARG);
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(invoke(&none), S_FALSE);
}

TEST(DispatchCall, AFailureFillsTheExceptionFromTheErrorInformation)
{
    Toy toy;
    const ToyCall call(toy, kFail, DISPATCH_METHOD, {Number(-1200)});
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(call.exception.scode, -1200);
    EXPECT_EQ(call.exception.wCode, 0);
    EXPECT_EQ(Text(call.exception.bstrDescription), u"It failed on purpose.");
    EXPECT_EQ(Text(call.exception.bstrSource), u"Toy");
    EXPECT_EQ(call.exception.bstrHelpFile, nullptr);
    EXPECT_EQ(call.exception.dwHelpContext, 5u);
    EXPECT_EQ(call.badArgument, 99u);
    EXPECT_FALSE(TakeErrorInformation().present);
}

TEST(DispatchCall, WithoutAPlaceForTheExceptionTheMembersCodeIsReturnedAndTheInformationStays)
{
    Toy toy;
    VARIANT code = Number(-1200);
    DISPPARAMS parameters{&code, nullptr, 1, 0};
    EXPECT_EQ(toy.Invoke(kFail, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), -1200);
    EXPECT_EQ(TakeErrorInformation().description, u"It failed on purpose.");
}

TEST(DispatchCall, ErrorInformationOfAnEarlierCallIsNotUsed)
{
    Toy toy;
    LeaveStaleErrorInformation();
    OutText slot;
    const ToyCall call(toy, kFailLate, DISPATCH_METHOD, {Empty(), Reference(VT_BSTR, slot.Slot())});
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(call.exception.scode, -1201);
    EXPECT_EQ(call.exception.bstrDescription, nullptr);
    EXPECT_EQ(slot.Text(), u"written all the same");
}

TEST(DispatchCall, AFailureOnTheWayInLeavesNoException)
{
    Toy toy;
    const Bstr text(u"x");
    const ToyCall call(toy, kFail, DISPATCH_METHOD, {Text(text)});
    EXPECT_EQ(call.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.exception.scode, 0);
}

}  // namespace
}  // namespace zupm::test
