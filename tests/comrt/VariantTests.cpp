#include <gtest/gtest.h>

#include "tests/comrt/CountedObject.h"
#include "zuPolicyManager/zucomrt.h"

namespace zupm::test {
namespace {

TEST(Variant, Init_MakesItEmptyWithoutFreeing)
{
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = reinterpret_cast<BSTR>(std::uintptr_t{0x10});
    VariantInit(&value);
    EXPECT_EQ(value.vt, VT_EMPTY);
    VariantInit(nullptr);
}

TEST(Variant, Clear_FreesStringsAndReleasesObjects)
{
    VARIANT text{};
    text.vt = VT_BSTR;
    text.bstrVal = SysAllocString(u"freed, or the leak check tells");
    EXPECT_EQ(VariantClear(&text), S_OK);
    EXPECT_EQ(text.vt, VT_EMPTY);
    EXPECT_EQ(text.bstrVal, nullptr);

    CountedObject object;
    VARIANT reference{};
    reference.vt = VT_UNKNOWN;
    reference.punkVal = &object;
    object.AddRef();
    EXPECT_EQ(VariantClear(&reference), S_OK);
    EXPECT_EQ(object.references, 1u);
    EXPECT_EQ(reference.vt, VT_EMPTY);
}

TEST(Variant, Clear_LeavesAloneWhatAReferencePointsTo)
{
    BSTR text = SysAllocString(u"the owner's");
    VARIANT value{};
    value.vt = VT_BYREF | VT_BSTR;
    value.pbstrVal = &text;
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(SysStringLen(text), 11u);
    SysFreeString(text);
}

TEST(Variant, Clear_AcceptsNullContentsAndEveryPlainType)
{
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_UNKNOWN,
                               VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT}) {
        VARIANT value{};
        value.vt = type;
        EXPECT_EQ(VariantClear(&value), S_OK) << type;
        EXPECT_EQ(value.vt, VT_EMPTY) << type;
    }
}

TEST(Variant, Clear_RefusesATypeThatNoVariantHolds)
{
    for (const int type : {int{VT_VARIANT}, int{VT_VOID}, int{VT_PTR}, 0x2000 | VT_I4, 999}) {
        VARIANT value{};
        value.vt = static_cast<VARTYPE>(type);
        EXPECT_TRUE(FAILED(VariantClear(&value))) << type;
        EXPECT_EQ(value.vt, type);
    }
    EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
}

}  // namespace
}  // namespace zupm::test
