#include "common/Macros.h"

#include <gtest/gtest.h>

namespace zupm {
namespace {

class Macros : public testing::Test {
protected:
    ~Macros() override { UnregisterAllMacros(); }

    static std::u16string Expand(std::u16string_view text, std::u16string_view open = u"<",
                                 std::u16string_view close = u">")
    {
        int flags = 0;
        return cmnlib_ExpandMacro(text, open, close, flags, u"");
    }
};

TEST_F(Macros, NothingRegistered_ChangesNothing)
{
    EXPECT_EQ(Expand(u"<Name> & <x"), u"<Name> & <x");
}

struct ExpandCase {
    std::u16string_view text;
    std::u16string_view expected;
};

constexpr ExpandCase kCases[] = {
    {u"", u""},
    {u"plain", u"plain"},
    {u"<A>", u"one"},
    {u"x<A>y<B>z", u"xoney<A>z"},
    {u"<A><A>", u"oneone"},
    {u"<a>", u"<a>"},
    {u"<Unknown><A>", u"<Unknown>one"},
    {u"<<A>", u"<one"},
    {u"<A", u"<A"},
    {u"A>", u"A>"},
    {u"<>", u"<>"},
    {u"<Unknown <A> >", u"<Unknown one >"},
    {u"<A>>", u"one>"},
    {u"<Empty>", u""},
};

TEST_F(Macros, RegisteredNames_AreReplacedOnceAndNothingElse)
{
    RegisterMacro(u"A", u"one");
    RegisterMacro(u"B", u"<A>");
    RegisterMacro(u"Empty", u"");
    for (const ExpandCase& row : kCases) {
        EXPECT_EQ(Expand(row.text), row.expected);
    }
}

TEST_F(Macros, LongMarks_AreMatchedWhole)
{
    RegisterMacro(u"A", u"one");
    EXPECT_EQ(Expand(u"$$A%% $A% $$A%", u"$$", u"%%"), u"one $A% $$A%");
}

TEST_F(Macros, EmptyMarks_ExpandNothing)
{
    RegisterMacro(u"A", u"one");
    EXPECT_EQ(Expand(u"<A>", u"", u">"), u"<A>");
    EXPECT_EQ(Expand(u"<A>", u"<", u""), u"<A>");
}

TEST_F(Macros, RegisteringAgain_Replaces)
{
    RegisterMacro(u"A", u"one");
    RegisterMacro(u"A", u"two");
    EXPECT_EQ(Expand(u"<A>"), u"two");
    UnregisterAllMacros();
    EXPECT_EQ(Expand(u"<A>"), u"<A>");
}

TEST_F(Macros, ManyOpeningsBeforeOneClosing_TakeLinearTime)
{
    RegisterMacro(u"A", u"one");
    const std::u16string openings(2'000'000, u'<');
    EXPECT_EQ(Expand(openings + u"A>"), openings.substr(1) + u"one");
}

}  // namespace
}  // namespace zupm
