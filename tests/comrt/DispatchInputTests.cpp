// Values on their way into a member.
#include <gtest/gtest.h>

#include <limits>

#include "tests/comrt/CountedObject.h"
#include "tests/comrt/ToyInterface.h"

namespace zupm::test {
namespace {

template <class Value>
VARIANT Whole(VARTYPE type, Value VARIANT::*member, Value value)
{
    VARIANT variant = Empty(type);
    variant.*member = value;
    return variant;
}

std::u16string Joined(const VARIANT& argument)
{
    Toy toy;
    const Bstr right(u"r");
    const ToyCall call(toy, kJoin, DISPATCH_METHOD, {argument, Text(right)});
    if (call.result != S_OK) {
        EXPECT_EQ(call.badArgument, 1u);
        return call.result == DISP_E_TYPEMISMATCH ? u"mismatch" : u"failed";
    }
    EXPECT_EQ(call.value.vt, VT_BSTR);
    const std::u16string text = Text(call.value.bstrVal);
    EXPECT_TRUE(text.ends_with(u"|r"));
    return text.substr(0, text.size() - 2);
}

/// The number that a member gets; `result` reports when there is none.
LONG Taken(const VARIANT& argument, HRESULT& result)
{
    Toy toy;
    const ToyCall call(toy, kCount, DISPATCH_PROPERTYPUT, {argument});
    result = call.result;
    EXPECT_EQ(call.badArgument, result == S_OK ? 99u : 0u);
    EXPECT_EQ(toy.calls, result == S_OK ? 1 : 0);
    return toy.stored;
}

struct WholeRow {
    VARIANT argument;
    std::u16string_view text;
    bool fits;
    LONG number;
};

std::vector<WholeRow> WholeRows()
{
    return {
        {Whole<std::int8_t>(VT_I1, &VARIANT::cVal, -128), u"-128", true, -128},
        {Whole<std::uint8_t>(VT_UI1, &VARIANT::bVal, 255), u"255", true, 255},
        {Whole<SHORT>(VT_I2, &VARIANT::iVal, -32768), u"-32768", true, -32768},
        {Whole<WORD>(VT_UI2, &VARIANT::uiVal, 65535), u"65535", true, 65535},
        {Whole<LONG>(VT_I4, &VARIANT::lVal, INT32_MIN), u"-2147483648", true, INT32_MIN},
        {Whole<LONG>(VT_INT, &VARIANT::lVal, INT32_MAX), u"2147483647", true, INT32_MAX},
        {Whole<ULONG>(VT_UI4, &VARIANT::ulVal, 0x80000000u), u"2147483648", false, 0},
        {Whole<ULONG>(VT_UINT, &VARIANT::ulVal, 7), u"7", true, 7},
        {Whole<std::int64_t>(VT_I8, &VARIANT::llVal, INT64_MIN), u"-9223372036854775808", false, 0},
        {Whole<std::int64_t>(VT_I8, &VARIANT::llVal, -5), u"-5", true, -5},
        {Whole<std::int64_t>(VT_I8, &VARIANT::llVal, std::int64_t{INT32_MAX} + 1), u"2147483648", false, 0},
        {Whole<std::uint64_t>(VT_UI8, &VARIANT::ullVal, UINT64_MAX), u"18446744073709551615", false, 0},
        {Whole<std::uint64_t>(VT_UI8, &VARIANT::ullVal, 20261121014803u), u"20261121014803", false, 0},
        {Whole<std::uint64_t>(VT_UI8, &VARIANT::ullVal, 8), u"8", true, 8},
        {Whole<VARIANT_BOOL>(VT_BOOL, &VARIANT::boolVal, -1), u"-1", true, -1},
        {Whole<VARIANT_BOOL>(VT_BOOL, &VARIANT::boolVal, 0), u"0", true, 0},
        {Empty(), u"", true, 0},
    };
}

TEST(DispatchInput, WholeNumbersBecomeTextAndNumbersWithinTheirRange)
{
    for (const WholeRow& row : WholeRows()) {
        EXPECT_EQ(Joined(row.argument), row.text) << row.argument.vt;
        HRESULT result = S_OK;
        EXPECT_EQ(Taken(row.argument, result), row.number) << row.argument.vt;
        EXPECT_EQ(result, row.fits ? S_OK : DISP_E_OVERFLOW) << row.argument.vt;
    }
}

TEST(DispatchInput, WholeNumbersAreReadThroughReferences)
{
    for (const WholeRow& row : WholeRows()) {
        VARIANT inner = row.argument;
        EXPECT_EQ(Joined(Reference(VT_VARIANT, &inner)), row.text) << row.argument.vt;
        if (row.argument.vt != VT_EMPTY) {
            const VARIANT direct = Reference(row.argument.vt, &inner.llVal);
            EXPECT_EQ(Joined(direct), row.text) << row.argument.vt;
            VARIANT nested = direct;
            EXPECT_EQ(Joined(Reference(VT_VARIANT, &nested)), row.text) << row.argument.vt;
        }
    }
}

TEST(DispatchInput, AStringPassesUnchanged)
{
    const Bstr odd(std::u16string(u"a\0\xD800 \u20AC", 5));
    const Bstr null;
    EXPECT_EQ(Joined(Text(odd)), odd.Text());
    EXPECT_EQ(Joined(Text(null)), u"");
    BSTR slot = odd.Get();
    EXPECT_EQ(Joined(Reference(VT_BSTR, &slot)), odd.Text());
    VARIANT inner = Text(odd);
    EXPECT_EQ(Joined(Reference(VT_VARIANT, &inner)), odd.Text());
}

struct NumberTextRow {
    const char16_t* text;
    HRESULT result;
    LONG number;
};

TEST(DispatchInput, DecimalTextBecomesANumber)
{
    constexpr NumberTextRow kRows[] = {
        {u"0", S_OK, 0},
        {u"-7", S_OK, -7},
        {u"+7", S_OK, 7},
        {u"  12\t", S_OK, 12},
        {u"2147483647", S_OK, INT32_MAX},
        {u"-2147483648", S_OK, INT32_MIN},
        {u"00000000000000000000000000000000000000042", S_OK, 42},
        {u"2147483648", DISP_E_OVERFLOW, 0},
        {u"-2147483649", DISP_E_OVERFLOW, 0},
        {u"99999999999999999999999999999999999999999", DISP_E_OVERFLOW, 0},
        {u"", DISP_E_TYPEMISMATCH, 0},
        {u" ", DISP_E_TYPEMISMATCH, 0},
        {u"-", DISP_E_TYPEMISMATCH, 0},
        {u"- 1", DISP_E_TYPEMISMATCH, 0},
        {u"--1", DISP_E_TYPEMISMATCH, 0},
        {u"1x", DISP_E_TYPEMISMATCH, 0},
        {u"0x10", DISP_E_TYPEMISMATCH, 0},
        {u"1.5", DISP_E_TYPEMISMATCH, 0},
        {u"\u0661", DISP_E_TYPEMISMATCH, 0},
    };
    for (const NumberTextRow& row : kRows) {
        const Bstr text(row.text);
        HRESULT result = S_OK;
        EXPECT_EQ(Taken(Text(text), result), row.number) << Utf8(row.text);
        EXPECT_EQ(result, row.result) << Utf8(row.text);
    }
}

TEST(DispatchInput, WhatIsNoTextAndNoNumberIsRefused)
{
    Toy toy;
    VARIANT innermost = Number(1);
    VARIANT inner = Reference(VT_VARIANT, &innermost);
    LONG number = 1;
    for (const VARIANT& argument :
         {Empty(VT_NULL), Empty(VT_ERROR), Object(&toy), Empty(VT_DISPATCH), Empty(999), Reference(VT_BSTR, nullptr),
          Reference(VT_VARIANT, nullptr), Reference(VT_VARIANT, &inner), Reference(VT_ERROR, &number),
          Reference(999, &number)}) {
        HRESULT result = S_OK;
        EXPECT_EQ(Joined(argument), u"mismatch") << argument.vt;
        EXPECT_EQ(Taken(argument, result), 0) << argument.vt;
        EXPECT_EQ(result, DISP_E_TYPEMISMATCH) << argument.vt;
    }
}

TEST(DispatchInput, AnObjectPassesUnchangedAndKeepsItsReferences)
{
    Toy toy;
    CountedObject object;
    IUnknown* slot = &object;
    VARIANT inner = Object(&object);
    for (const VARIANT& argument : {Object(&object), Reference(VT_UNKNOWN, &slot), Reference(VT_VARIANT, &inner)}) {
        toy.echoed = nullptr;
        const ToyCall call(toy, kEcho, DISPATCH_METHOD, {argument});
        EXPECT_EQ(call.result, S_OK);
        EXPECT_EQ(toy.echoed, &object);
        EXPECT_EQ(object.references, 2u);  // the value's
    }
    EXPECT_EQ(object.references, 1u);
    VARIANT dispatch = Empty(VT_DISPATCH);
    dispatch.pdispVal = &toy;
    EXPECT_EQ(ToyCall(toy, kEcho, DISPATCH_METHOD, {dispatch}).result, S_OK);
    EXPECT_EQ(toy.echoed, &toy);
    EXPECT_EQ(toy.references, 1u);
}

TEST(DispatchInput, ANullObjectPassesAndAnythingElseIsRefused)
{
    Toy toy;
    toy.echoed = &toy;
    EXPECT_EQ(ToyCall(toy, kEcho, DISPATCH_METHOD, {Object(nullptr)}).result, S_OK);
    EXPECT_EQ(toy.echoed, nullptr);
    for (const VARIANT& argument : {Empty(), Empty(VT_NULL), Number(0), Empty(VT_BSTR)}) {
        const ToyCall call(toy, kEcho, DISPATCH_METHOD, {argument});
        EXPECT_EQ(call.result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(call.badArgument, 0u);
    }
}

TEST(DispatchInput, TheBadArgumentIsCountedFromTheLast)
{
    Toy toy;
    const Bstr text(u"x");
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {Text(text), Number(1)}).badArgument, 1u);
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {Number(1), Text(text)}).badArgument, 0u);
    LONG sum = 0;
    EXPECT_EQ(ToyCall(toy, kAdd, DISPATCH_METHOD, {Text(text), Number(1), Reference(VT_I4, &sum)}).badArgument, 2u);
    EXPECT_EQ(toy.calls, 0);
}

}  // namespace
}  // namespace zupm::test
