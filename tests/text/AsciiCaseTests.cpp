#include "text/AsciiCase.h"

#include <gtest/gtest.h>

namespace zupm {
namespace {

struct CaseRow {
    const char* label;
    std::u16string_view left;
    std::u16string_view right;
    bool equal;
};

constexpr CaseRow kRows[] = {
    {"empty", u"", u"", true},
    {"letters", u"General", u"gENERAL", true},
    {"the first and the last letter", u"az", u"AZ", true},
    {"another letter", u"General", u"Generah", false},
    {"shorter", u"Gener", u"General", false},
    {"the signs after the letters", u"[", u"{", false},
    {"the signs before the letters", u"@", u"`", false},
    {"letters beyond ASCII", u"\u00E4", u"\u00C4", false},
    {"a unit whose low byte is a letter", u"\u0161", u"\u0141", false},
};

TEST(AsciiCase, EqualsIgnoringAsciiCase_JoinsTheCasesOfAToZAlone)
{
    for (const CaseRow& row : kRows) {
        EXPECT_EQ(EqualsIgnoringAsciiCase(row.left, row.right), row.equal) << row.label;
        EXPECT_EQ(EqualsIgnoringAsciiCase(row.right, row.left), row.equal) << row.label;
    }
}

TEST(AsciiCase, FoldAscii_ChangesTheTwentySixCapitalsAlone)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const bool isCapital = unit >= u'A' && unit <= u'Z';
        const unsigned expected = isCapital ? unit + 0x20 : unit;
        ASSERT_EQ(FoldAscii(static_cast<char16_t>(unit)), static_cast<char16_t>(expected)) << std::hex << unit;
    }
}

}  // namespace
}  // namespace zupm
