#include <gtest/gtest.h>

#include "common/PrivateProfile.h"

namespace zupm {
namespace {

TEST(ProfileName, IsTheSameForNamesThatDifferInCaseOrInBlanksAtTheirEnds)
{
    EXPECT_EQ(ProfileName(u"Key"), ProfileName(u" kEY\t"));
    EXPECT_EQ(ProfileName(u"az"), ProfileName(u"AZ"));
    EXPECT_EQ(ProfileName(u""), ProfileName(u"  "));
}

TEST(ProfileName, DiffersForOtherNames)
{
    EXPECT_NE(ProfileName(u"a b"), ProfileName(u"ab"));
    EXPECT_NE(ProfileName(u"key"), ProfileName(u"keys"));
    EXPECT_NE(ProfileName(u"["), ProfileName(u"{"));
    EXPECT_NE(ProfileName(u"@"), ProfileName(u"`"));
}

TEST(ProfileName, OfItself_IsItself)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string name = ProfileName(std::u16string(1, static_cast<char16_t>(unit)));
        ASSERT_EQ(ProfileName(name), name) << std::hex << unit;
    }
}

}  // namespace
}  // namespace zupm
