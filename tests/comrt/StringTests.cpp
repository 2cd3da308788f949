#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "zuPolicyManager/zucomrt.h"

namespace {

TEST(String, Alloc_CopiesUpToTheNullAndEndsWithOne)
{
    const BSTR text = SysAllocString(u"häß\u20AC");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringLen(text), 4u);
    EXPECT_EQ(SysStringByteLen(text), 8u);
    EXPECT_EQ(std::u16string(text), u"häß\u20AC");
    EXPECT_EQ(text[4], u'\0');
    SysFreeString(text);
}

TEST(String, Alloc_GivesAnEmptyStringForAnEmptyTextAndNullForNull)
{
    const BSTR empty = SysAllocString(u"");
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(SysStringLen(empty), 0u);
    EXPECT_EQ(empty[0], u'\0');
    SysFreeString(empty);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(String, AllocLen_KeepsEmbeddedNullsAndLoneSurrogates)
{
    constexpr OLECHAR kText[] = {u'a', u'\0', char16_t{0xD800}, u'b'};
    const BSTR text = SysAllocStringLen(kText, 4);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::u16string(text, SysStringLen(text)), std::u16string(kText, 4));
    SysFreeString(text);
}

TEST(String, AllocLen_GivesNullUnitsForANullText)
{
    const BSTR text = SysAllocStringLen(nullptr, 3);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::u16string(text, 4), std::u16string(4, u'\0'));
    SysFreeString(text);
}

TEST(String, AllocLen_RefusesLengthsWhoseBytesDoNotFitTheCount)
{
    // No text of that length is read: a length past the limit is refused before the text is read.
    for (const UINT length : {UINT32_MAX, UINT32_MAX / 2, UINT32_MAX / 2 - 4}) {
        EXPECT_EQ(SysAllocStringLen(u"x", length), nullptr) << length;
    }
}

TEST(String, TheByteCountIsRightBeforeTheText)
{
    const BSTR text = SysAllocString(u"abc");
    std::uint32_t count = 0;
    std::memcpy(&count, reinterpret_cast<const char*>(text) - 4, 4);
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(text) % 8, 0u);
    SysFreeString(text);
}

TEST(String, NullIsFreedAndMeasuredAsEmpty)
{
    SysFreeString(nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
}

}  // namespace
