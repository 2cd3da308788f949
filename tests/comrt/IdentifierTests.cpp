#include <gtest/gtest.h>

#include <string>

#include "zuPolicyManager/zuPolicyManager.h"

namespace {

constexpr GUID kSample{0x01234567, 0x89AB, 0xCDEF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
constexpr const OLECHAR* kSampleText = u"{01234567-89AB-CDEF-FEDC-BA9876543210}";

TEST(Identifier, StringFromGUID2_WritesUpperCaseDigitsInBraces)
{
    OLECHAR text[39];
    EXPECT_EQ(StringFromGUID2(kSample, text, 39), 39);
    EXPECT_EQ(std::u16string(text), kSampleText);
}

TEST(Identifier, StringFromGUID2_WritesNothingWhenThereIsNoRoom)
{
    OLECHAR text[39] = {u'x'};
    EXPECT_EQ(StringFromGUID2(kSample, text, 38), 0);
    EXPECT_EQ(StringFromGUID2(kSample, text, -1), 0);
    EXPECT_EQ(StringFromGUID2(kSample, nullptr, 39), 0);
    EXPECT_EQ(text[0], u'x');
}

TEST(Identifier, CLSIDFromString_ReadsEitherCase)
{
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromString(kSampleText, &clsid), S_OK);
    EXPECT_EQ(clsid, kSample);
    clsid = {};
    EXPECT_EQ(CLSIDFromString(u"{01234567-89ab-cdef-FEDC-ba9876543210}", &clsid), S_OK);
    EXPECT_EQ(clsid, kSample);
}

TEST(Identifier, EveryClassIdentifierIsReadBackFromItsText)
{
    for (const CLSID& clsid : {CLSID_TaskInfo, CLSID_PolicyTask, CLSID_PolicyProduct, CLSID_PolicyFile}) {
        OLECHAR text[39];
        ASSERT_EQ(StringFromGUID2(clsid, text, 39), 39);
        CLSID read{};
        EXPECT_EQ(CLSIDFromString(text, &read), S_OK);
        EXPECT_EQ(read, clsid);
    }
}

TEST(Identifier, CLSIDFromString_RefusesEverythingElseAndClearsTheOut)
{
    const OLECHAR* const kBad[] = {
        nullptr,
        u"",
        u"{",
        u"01234567-89AB-CDEF-FEDC-BA9876543210",
        u"{01234567-89AB-CDEF-FEDC-BA987654321}",
        u"{01234567-89AB-CDEF-FEDC-BA98765432100}",
        u"{01234567-89AB-CDEF-FEDC-BA9876543210} ",
        u" {01234567-89AB-CDEF-FEDC-BA9876543210}",
        u"{01234567-89AB-CDEF-FEDCBA9876543210--}",
        u"{0123456789AB-CDEF-FEDC-BA98-76543210-}",
        u"{0123456G-89AB-CDEF-FEDC-BA9876543210}",
        u"{0123456\uFF10-89AB-CDEF-FEDC-BA9876543210}",
        u"(01234567-89AB-CDEF-FEDC-BA9876543210)",
    };
    for (const OLECHAR* text : kBad) {
        CLSID clsid = kSample;
        EXPECT_EQ(CLSIDFromString(text, &clsid), CO_E_CLASSSTRING);
        EXPECT_EQ(clsid, GUID_NULL);
    }
    EXPECT_EQ(CLSIDFromString(kSampleText, nullptr), E_POINTER);
}

}  // namespace
