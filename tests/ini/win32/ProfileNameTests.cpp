// Names in an INI file beside the system's own comparison without case.
#include <windows.h>

#include <gtest/gtest.h>

#include "common/PrivateProfile.h"

namespace zupm::test {

namespace {

std::u16string NameOf(wchar_t unit)
{
    return ProfileName(std::u16string(1, static_cast<char16_t>(unit)));
}

bool SystemJoins(wchar_t left, wchar_t right)
{
    return CompareStringOrdinal(&left, 1, &right, 1, TRUE) == CSTR_EQUAL;
}

/// A blank has no name left.
bool HasName(unsigned unit)
{
    return unit > 0x20;
}

struct CaseRow {
    const char* label;
    std::u16string_view left;
    std::u16string_view right;
    bool equal;
};

constexpr CaseRow kRows[] = {
    {"umlauts", u"\u00E4\u00F6\u00FC", u"\u00C4\u00D6\u00DC", true},
    {"y with diaeresis", u"\u00FF", u"\u0178", true},
    {"Greek", u"\u03B1\u03C9", u"\u0391\u03A9", true},
    {"Cyrillic", u"\u0436\u0451", u"\u0416\u0401", true},
    {"Latin pairs", u"\u0101\u0137", u"\u0100\u0136", true},
    {"full-width", u"\uFF41", u"\uFF21", true},
    {"Greek with a small iota", u"\u1F80", u"\u1F88", true},
    {"division and multiplication", u"\u00F7", u"\u00D7", false},
    {"sharp s has no capital of one unit", u"\u00DF", u"SS", false},
    {"dotless i is no i", u"\u0131", u"I", false},
    {"long s is no s", u"\u017F", u"S", false},
    {"final sigma is no sigma", u"\u03C2", u"\u03A3", false},
    {"Kelvin sign is no k", u"\u212A", u"k", false},
    {"pairs of surrogates as they are", u"\U00010428", u"\U00010400", false},
};

}  // namespace

TEST(ProfileNameOfTheSystem, EqualsForLettersOfOneCapital)
{
    for (const CaseRow& row : kRows) {
        EXPECT_EQ(ProfileName(row.left) == ProfileName(row.right), row.equal) << row.label;
    }
}

TEST(ProfileNameOfTheSystem, EveryUnitAndItsForm_AreOneForTheSystem)
{
    int changed = 0;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const auto wide = static_cast<wchar_t>(unit);
        if (HasName(unit)) {
            const auto form = static_cast<wchar_t>(NameOf(wide).at(0));
            ASSERT_TRUE(SystemJoins(wide, form)) << std::hex << unit;
            changed += form == wide ? 0 : 1;
        }
    }
    EXPECT_GT(changed, 1000) << "letters of many alphabets have two cases";
}

TEST(ProfileNameOfTheSystem, WhatTheSystemJoins_HasOneForm)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const auto wide = static_cast<wchar_t>(unit);
        wchar_t small = wide;
        CharLowerBuffW(&small, 1);
        if (HasName(unit) && SystemJoins(wide, small)) {
            ASSERT_EQ(NameOf(wide), NameOf(small)) << std::hex << unit;
        }
    }
}

}  // namespace zupm::test
