#include "text/CaseFold.h"

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
    {"another letter", u"General", u"Generah", false},
    {"shorter", u"Gener", u"General", false},
    {"umlauts", u"\u00E4\u00F6\u00FC", u"\u00C4\u00D6\u00DC", true},
    {"y with diaeresis", u"\u00FF", u"\u0178", true},
    {"Greek", u"\u03B1\u03C9", u"\u0391\u03A9", true},
    {"Cyrillic", u"\u0436\u0451", u"\u0416\u0401", true},
    {"Latin pairs", u"\u0101\u0137", u"\u0100\u0136", true},
    {"full-width", u"\uFF41", u"\uFF21", true},
    {"signs beside the letters", u"[", u"{", false},
    {"at and backquote", u"@", u"`", false},
    {"division and multiplication", u"\u00F7", u"\u00D7", false},
    {"sharp s has no capital of one unit", u"\u00DF", u"SS", false},
    {"dotless i is no i", u"\u0131", u"I", false},
    {"long s is no s", u"\u017F", u"S", false},
    {"final sigma is no sigma", u"\u03C2", u"\u03A3", false},
    {"Kelvin sign is no k", u"\u212A", u"k", false},
    {"pairs of surrogates as they are", u"\U00010428", u"\U00010400", false},
};

TEST(CaseFold, EqualsIgnoringCase_JoinsCapitalAndSmallOfTheBasicPlane)
{
    for (const CaseRow& row : kRows) {
        EXPECT_EQ(EqualsIgnoringCase(row.left, row.right), row.equal) << row.label;
        EXPECT_EQ(EqualsIgnoringCase(row.right, row.left), row.equal) << row.label;
    }
}

TEST(CaseFold, ToCapital_IsItsOwnCapital)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const char16_t capital = ToCapital(static_cast<char16_t>(unit));
        ASSERT_EQ(ToCapital(capital), capital) << std::hex << unit;
    }
}

}  // namespace
}  // namespace zupm
