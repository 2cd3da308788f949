// Strings at the interface boundary.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "com/Strings.h"

namespace zupm::test {
namespace {

using namespace std::string_view_literals;

TEST(Strings, TextOf_TakesNullForTheEmptyString)
{
    EXPECT_EQ(TextOf(nullptr), u"");
}

TEST(Strings, TextOf_KeepsEmbeddedNullsAndSurrogates)
{
    const std::u16string text(u"a\0b\xD83D\xDE00\xD800"sv);
    EXPECT_EQ(TextOf(Bstr(text).Get()), text);
}

TEST(Strings, StoreString_RefusesANullSlot)
{
    EXPECT_EQ(StoreString(nullptr, u"x"), result::BadArgument);
    EXPECT_EQ(OverwriteString(nullptr, u"x"), result::BadArgument);
    ClearString(nullptr);
}

TEST(Strings, StoreString_ReplacesWhatTheSlotHolds)
{
    BSTR slot = nullptr;
    EXPECT_EQ(StoreString(&slot, u"first"), result::Success);
    EXPECT_EQ(StoreString(&slot, u""), result::Success);
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(SysStringLen(slot), 0U);
    ClearString(&slot);
    EXPECT_EQ(slot, nullptr);
}

TEST(Strings, StoreString_MayCopyFromTheSlotItReplaces)
{
    Bstr text(u"abcdef");
    std::u16string copy = text.Text();
    BSTR slot = text.Detach();
    const std::u16string_view own(reinterpret_cast<const char16_t*>(slot) + 2, 3);
    EXPECT_EQ(StoreString(&slot, own), result::Success);
    EXPECT_EQ(TextOf(slot), copy.substr(2, 3));
    ClearString(&slot);
}

TEST(Strings, ReplaceString_KeepsWhatTheSlotHoldsWhenTheTextIsTooLong)
{
    EXPECT_EQ(ReplaceString(nullptr, u"x"), result::BadArgument);
    const std::u16string_view tooLong(u"x", std::size_t{0x80000000});
    Bstr slot(u"old");
    const BSTR before = slot.Get();
    EXPECT_EQ(ReplaceString(slot.Slot(), tooLong), result::AllocationFailed);
    EXPECT_EQ(slot.Get(), before);
    EXPECT_EQ(ReplaceString(slot.Slot(), u"new"), result::Success);
    EXPECT_EQ(slot.Text(), u"new");
}

TEST(Strings, StoreString_MakesTheSlotNullWhenTheTextIsTooLong)
{
    const std::u16string_view tooLong(u"x", std::size_t{0x80000000});
    Bstr slot(u"old");
    BSTR raw = slot.Detach();
    EXPECT_EQ(StoreString(&raw, tooLong), result::AllocationFailed);
    EXPECT_EQ(raw, nullptr);
}

TEST(Strings, OverwriteString_DoesNotFreeWhatTheSlotHeld)
{
    const Bstr held(u"held");
    BSTR slot = held.Get();
    EXPECT_EQ(OverwriteString(&slot, u"new"), result::Success);
    EXPECT_EQ(TextOf(slot), u"new");
    EXPECT_EQ(held.Text(), u"held");
    ClearString(&slot);
}

TEST(Strings, Bstr_MovesItsString)
{
    Bstr first(u"one");
    Bstr second(std::move(first));
    EXPECT_EQ(second.Text(), u"one");
    Bstr third(u"three");
    third = std::move(second);
    EXPECT_EQ(third.Text(), u"one");
    EXPECT_EQ(*third.Put(), nullptr);
}

}  // namespace
}  // namespace zupm::test
