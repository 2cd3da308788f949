#include "text/Decimal.h"

#include <gtest/gtest.h>

#include <limits>

namespace zupm {
namespace {

constexpr auto kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();

struct ParseCase {
    const char* label;
    std::u16string_view text;
    std::int64_t wide;
    std::int32_t narrow;
};

constexpr ParseCase kParseCases[] = {
    {"empty", u"", 0, 0},
    {"zero", u"0", 0, 0},
    {"digits", u"12", 12, 12},
    {"letters after digits", u"12abc", 12, 12},
    {"letters only", u"abc", 0, 0},
    {"blank and minus", u" -7", -7, -7},
    {"every blank", u" \t\r\n\v\f7", 7, 7},
    {"plus", u"+7", 7, 7},
    {"two signs", u"--7", 0, 0},
    {"sign and blank", u"- 7", 0, 0},
    {"sign alone", u"-", 0, 0},
    {"leading zeros", u"000000000000000000000000000000012", 12, 12},
    {"no-break space is no blank", u"\u00A07", 0, 0},
    {"digits of another script", u"\u0661", 0, 0},
    {"null after digits",
     {u"1\0"
      u"2",
      3},
     1,
     1},
    {"fraction", u"1.9", 1, 1},
    {"largest 32 bits", u"2147483647", 2147483647, 2147483647},
    {"past 32 bits", u"2147483648", 2147483648, 2147483647},
    {"smallest 32 bits", u"-2147483648", -2147483648, std::numeric_limits<std::int32_t>::min()},
    {"below 32 bits", u"-2147483649", -2147483649, std::numeric_limits<std::int32_t>::min()},
    {"time stamp", u"20261121014803", 20261121014803, 2147483647},
    {"largest", u"9223372036854775807", kLargest, 2147483647},
    {"past the largest", u"9223372036854775808", kLargest, 2147483647},
    {"smallest", u"-9223372036854775808", kSmallest, std::numeric_limits<std::int32_t>::min()},
    {"below the smallest", u"-9223372036854775809", kSmallest, std::numeric_limits<std::int32_t>::min()},
    {"far past", u"99999999999999999999999999999999", kLargest, 2147483647},
};

TEST(Decimal, Parse_StopsAtTheFirstNonDigitAndAtTheLimits)
{
    for (const ParseCase& row : kParseCases) {
        EXPECT_EQ(ParseInt64(row.text), row.wide) << row.label;
        EXPECT_EQ(ParseInt32(row.text), row.narrow) << row.label;
    }
}

TEST(Decimal, Format_WritesTheLimits)
{
    EXPECT_EQ(FormatUnsigned(0), u"0");
    EXPECT_EQ(FormatUnsigned(std::numeric_limits<std::uint64_t>::max()), u"18446744073709551615");
    EXPECT_EQ(FormatSigned(0), u"0");
    EXPECT_EQ(FormatSigned(-1), u"-1");
    EXPECT_EQ(FormatSigned(kSmallest), u"-9223372036854775808");
    EXPECT_EQ(FormatSigned(kLargest), u"9223372036854775807");
}

}  // namespace
}  // namespace zupm
