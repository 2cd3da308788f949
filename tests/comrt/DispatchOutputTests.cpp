// Values on their way out of a member.
#include <gtest/gtest.h>

#include "tests/comrt/CountedObject.h"
#include "tests/comrt/ToyInterface.h"
#include "tests/support/Outs.h"

namespace zupm::test {
namespace {

/// A variant that holds a string of its own, as a script's variable does.
class Variable {
public:
    Variable() : m_value(Empty(VT_BSTR)) { m_value.bstrVal = NewString(u"what it held"); }
    ~Variable() { static_cast<void>(VariantClear(&m_value)); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    [[nodiscard]] VARIANT* Get() { return &m_value; }
    [[nodiscard]] VARIANT Argument() { return Reference(VT_VARIANT, &m_value); }
    [[nodiscard]] std::u16string Text() const { return m_value.vt == VT_BSTR ? test::Text(m_value.bstrVal) : u"?"; }

private:
    VARIANT m_value;
};

TEST(DispatchOutput, TheResultMayBeLeftOutAndArrivesAsTheValue)
{
    Toy toy;
    const Bstr left(u"l");
    const Bstr right(u"r");
    const ToyCall call(toy, kJoin, DISPATCH_METHOD, {Text(left), Text(right)});
    EXPECT_EQ(call.result, S_OK);
    ASSERT_EQ(call.value.vt, VT_BSTR);
    EXPECT_EQ(Text(call.value.bstrVal), u"l|r");
    const ToyCall sum(toy, kAdd, DISPATCH_METHOD, {Number(2), Number(3)});
    ASSERT_EQ(sum.value.vt, VT_I4);
    EXPECT_EQ(sum.value.lVal, 5);
}

TEST(DispatchOutput, TheResultMayAlsoBeGivenAsAnArgumentAndThenThereIsNoValue)
{
    Toy toy;
    const Bstr left(u"l");
    OutText slot;
    const ToyCall call(toy, kJoin, DISPATCH_METHOD, {Text(left), Text(left), Reference(VT_BSTR, slot.Slot())});
    EXPECT_EQ(call.result, S_OK);
    EXPECT_EQ(slot.Text(), u"l|l");
    EXPECT_EQ(call.value.vt, VT_EMPTY);
}

TEST(DispatchOutput, AResultThatNobodyWantsIsFreed)
{
    Toy toy;
    VARIANT argument = Object(&toy);
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    EXPECT_EQ(toy.Invoke(kEcho, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(toy.echoed, &toy);
    EXPECT_EQ(toy.references, 1u);
}

TEST(DispatchOutput, SlotsOfTheirOwnTypeAreWrittenDirectly)
{
    Toy toy;
    OutText first;
    OutText second;
    EXPECT_EQ(
        ToyCall(toy, kPair, DISPATCH_METHOD, {Reference(VT_BSTR, first.Slot()), Reference(VT_BSTR, second.Slot())})
            .result,
        S_OK);
    EXPECT_EQ(first.Text(), u"first");
    EXPECT_EQ(second.Text(), u"second");
    for (const VARTYPE type : {VT_I4, VT_INT}) {
        OutNumber number;
        EXPECT_EQ(ToyCall(toy, kNumbers, DISPATCH_METHOD, {Reference(type, number.Slot())}).result, S_OK);
        EXPECT_EQ(number.Value(), toy.stored);
    }
}

TEST(DispatchOutput, VariablesAreClearedAndGetTheValue)
{
    Toy toy;
    Variable first;
    Variable second;
    EXPECT_EQ(ToyCall(toy, kPair, DISPATCH_METHOD, {first.Argument(), second.Argument()}).result, S_OK);
    EXPECT_EQ(first.Text(), u"first");
    EXPECT_EQ(second.Text(), u"second");
    EXPECT_EQ(ToyCall(toy, kNumbers, DISPATCH_METHOD, {first.Argument()}).result, S_OK);
    EXPECT_EQ(first.Get()->vt, VT_I4);
    EXPECT_EQ(first.Get()->lVal, 1);
}

TEST(DispatchOutput, OneVariableMayBeInputAndOutputAtOnce)
{
    Toy toy;
    Variable variable;
    const VARIANT argument = variable.Argument();
    EXPECT_EQ(ToyCall(toy, kJoin, DISPATCH_METHOD, {argument, argument, argument}).result, S_OK);
    EXPECT_EQ(variable.Text(), u"what it held|what it held");
    EXPECT_EQ(ToyCall(toy, kPair, DISPATCH_METHOD, {argument, argument}).result, S_OK);
    EXPECT_EQ(variable.Text(), u"second");
}

TEST(DispatchOutput, AVariableGetsAnObjectAsDispatchWhenItOffersThat)
{
    Toy toy;
    CountedObject plain;
    toy.plain = &plain;
    {
        Variable variable;
        EXPECT_EQ(ToyCall(toy, kEcho, DISPATCH_METHOD, {Object(&toy), variable.Argument()}).result, S_OK);
        ASSERT_EQ(variable.Get()->vt, VT_DISPATCH);
        EXPECT_EQ(variable.Get()->pdispVal, &toy);
        EXPECT_EQ(toy.references, 2u);
        EXPECT_EQ(ToyCall(toy, kPlain, DISPATCH_METHOD, {variable.Argument()}).result, S_OK);
        ASSERT_EQ(variable.Get()->vt, VT_UNKNOWN);
        EXPECT_EQ(variable.Get()->punkVal, &plain);
        EXPECT_EQ(plain.references, 2u);
        EXPECT_EQ(toy.references, 1u);
    }
    EXPECT_EQ(plain.references, 1u);
}

TEST(DispatchOutput, ANullObjectArrivesAsANullDispatch)
{
    Toy toy;
    const ToyCall call(toy, kEcho, DISPATCH_METHOD, {Object(nullptr)});
    EXPECT_EQ(call.result, S_OK);
    EXPECT_EQ(call.value.vt, VT_DISPATCH);
    EXPECT_EQ(call.value.pdispVal, nullptr);
}

TEST(DispatchOutput, TypedObjectSlotsTakeEveryFormOfReference)
{
    Toy toy;
    {
        const ToyCall value(toy, kMakeTask, DISPATCH_METHOD, {});
        EXPECT_EQ(value.result, S_OK);
        ASSERT_EQ(value.value.vt, VT_DISPATCH);
        EXPECT_EQ(value.value.pdispVal, &toy);
        Variable variable;
        EXPECT_EQ(ToyCall(toy, kMakeTask, DISPATCH_METHOD, {variable.Argument()}).result, S_OK);
        EXPECT_EQ(variable.Get()->vt, VT_DISPATCH);
        EXPECT_EQ(toy.references, 3u);
    }
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
        OutObject<IDispatch> slot;
        EXPECT_EQ(ToyCall(toy, kMakeTask, DISPATCH_METHOD, {Reference(type, slot.Slot())}).result, S_OK);
        EXPECT_EQ(slot.Take().Get(), &toy);
    }
    EXPECT_EQ(toy.references, 1u);
}

TEST(DispatchOutput, ADispatchSlotGetsTheObjectsDispatchInterface)
{
    Toy toy;
    OutObject<IDispatch> slot;
    EXPECT_EQ(ToyCall(toy, kEcho, DISPATCH_METHOD, {Object(&toy), Reference(VT_DISPATCH, slot.Slot())}).result, S_OK);
    EXPECT_EQ(slot.Take().Get(), &toy);
    EXPECT_EQ(toy.references, 1u);
    EXPECT_EQ(ToyCall(toy, kEcho, DISPATCH_METHOD, {Object(nullptr), Reference(VT_DISPATCH, slot.Slot())}).result,
              S_OK);
    EXPECT_TRUE(slot.IsNull());
}

TEST(DispatchOutput, AnObjectWithoutDispatchDoesNotFitADispatchSlot)
{
    Toy toy;
    CountedObject plain;
    toy.plain = &plain;
    OutObject<IDispatch> slot;
    const ToyCall call(toy, kPlain, DISPATCH_METHOD, {Reference(VT_DISPATCH, slot.Slot())});
    EXPECT_EQ(call.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.badArgument, 0u);
    EXPECT_TRUE(slot.IsNull());
    EXPECT_EQ(plain.references, 1u);
    OutObject<IUnknown> any;
    EXPECT_EQ(ToyCall(toy, kPlain, DISPATCH_METHOD, {Reference(VT_UNKNOWN, any.Slot())}).result, S_OK);
    EXPECT_EQ(any.Take().Get(), &plain);
}

TEST(DispatchOutput, ReferencesOfAnotherTypeAreRefusedBeforeTheCall)
{
    Toy toy;
    BSTR string = nullptr;
    LONG number = 0;
    IUnknown* object = nullptr;
    const VARIANT kText = Reference(VT_BSTR, &string);
    const VARIANT kNumber = Reference(VT_I4, &number);
    const VARIANT kObject = Reference(VT_UNKNOWN, &object);
    for (const VARIANT& argument : {kNumber, kObject, Empty(), Empty(VT_BSTR), Reference(VT_BSTR, nullptr),
                                    Reference(VT_VARIANT, nullptr), Reference(VT_DISPATCH, &object)}) {
        const ToyCall call(toy, kPair, DISPATCH_METHOD, {argument, kText});
        EXPECT_EQ(call.result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(call.badArgument, 1u);
    }
    for (const VARIANT& argument : {kText, kObject, Number(1), Reference(VT_I2, &number)}) {
        EXPECT_EQ(ToyCall(toy, kNumbers, DISPATCH_METHOD, {argument}).result, DISP_E_TYPEMISMATCH);
    }
    for (const VARIANT& argument :
         {kText, kNumber, Object(&toy), Reference(VT_UNKNOWN, nullptr), Reference(VT_DISPATCH, nullptr)}) {
        EXPECT_EQ(ToyCall(toy, kMakeTask, DISPATCH_METHOD, {argument}).result, DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(toy.calls, 0);
}

TEST(DispatchOutput, AFailedMemberLeavesVariablesAndTheValueAloneAndNothingLeaks)
{
    Toy toy;
    Variable text;
    const Bstr in(u"x");
    const ToyCall call(toy, kFailLate, DISPATCH_METHOD, {Number(7), text.Argument()});
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(call.exception.scode, -1201);
    EXPECT_EQ(text.Text(), u"what it held");
    EXPECT_EQ(call.value.vt, VT_EMPTY);
    EXPECT_EQ(toy.references, 1u);
}

TEST(DispatchOutput, TemporariesAreFreedWhenALaterArgumentDoesNotFit)
{
    Toy toy;
    LONG number = 0;
    const ToyCall call(toy, kJoin, DISPATCH_METHOD, {Number(1), Number(2), Reference(VT_I4, &number)});
    EXPECT_EQ(call.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call.badArgument, 0u);
    EXPECT_EQ(toy.calls, 0);
}

}  // namespace
}  // namespace zupm::test
