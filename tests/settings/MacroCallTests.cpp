// How the cursor calls the macro expander: the linker sends its calls here first (`-Wl,--wrap`).
#include <vector>

#include "common/Macros.h"
#include "tests/settings/ContainerTest.h"

namespace zupm::test {
namespace {

struct MacroCall {
    std::u16string text;
    std::u16string open;
    std::u16string close;
    int flags;
    std::u16string context;

    friend bool operator==(const MacroCall&, const MacroCall&) = default;
};

std::vector<MacroCall> g_calls;

using MacroCalls = ContainerTest;

TEST_F(MacroCalls, PassTheValueBothMarksTheFlagOneAndTheContextInvalid)
{
    Load(R"(<P><Section name="S"><Setting name="A">&lt;x></Setting><Setting name="B"/></Section></P>)");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    g_calls.clear();
    EXPECT_EQ(CursorValue(u"S", u"A"), "<x>");
    EXPECT_EQ(CursorValue(u"S", u"B"), "");
    EXPECT_EQ(g_calls, (std::vector<MacroCall>{{u"<x>", u"<", u">", 1, u"invalid"}, {u"", u"<", u">", 1, u"invalid"}}));
}

TEST_F(MacroCalls, AreNotMadeForAMissingValue)
{
    Load("<P/>");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    g_calls.clear();
    EXPECT_EQ(CursorValue(u"S", u"A"), "code -1200");
    EXPECT_EQ(Cursor().SetSettingValue(u"S", u"A", u"<x>"), result::Success);
    EXPECT_TRUE(g_calls.empty());
}

}  // namespace
}  // namespace zupm::test

namespace {
using View = std::u16string_view;
}

// cmnlib_ExpandMacro under the names that --wrap gives it.
std::u16string RealExpandMacro(View text, View open, View close, int& flags, View context) __asm__(
    "__real__ZN4zupm18cmnlib_ExpandMacroB5cxx11ESt17basic_string_viewIDsSt11char_traitsIDsEES3_S3_RiS3_");
std::u16string NotedExpandMacro(View text, View open, View close, int& flags, View context) __asm__(
    "__wrap__ZN4zupm18cmnlib_ExpandMacroB5cxx11ESt17basic_string_viewIDsSt11char_traitsIDsEES3_S3_RiS3_");

std::u16string NotedExpandMacro(View text, View open, View close, int& flags, View context)
{
    using zupm::test::g_calls;
    g_calls.push_back(
        {std::u16string(text), std::u16string(open), std::u16string(close), flags, std::u16string(context)});
    return RealExpandMacro(text, open, close, flags, context);
}
