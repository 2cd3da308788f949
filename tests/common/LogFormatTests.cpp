#include <gtest/gtest.h>

#include <vector>

#include "common/CzuLogger.h"

namespace zupm {
namespace {

struct FormatCase {
    std::u16string_view format;
    std::vector<LogArgument> arguments;
    std::u16string_view expected;
};

LogArgument Text(std::u16string_view text)
{
    return text;
}
LogArgument Signed(std::int64_t value)
{
    return value;
}
LogArgument Unsigned(std::uint64_t value)
{
    return value;
}

TEST(LogFormat, Directives_TakeArgumentsOfTheirKind)
{
    const FormatCase cases[] = {
        {u"plain", {}, u"plain"},
        {u"", {}, u""},
        {u"Unexpected exception in %s",
         {Text(u"CTaskData::CopyData()")},
         u"Unexpected exception in CTaskData::CopyData()"},
        {u"line(%d), column(%d)", {Signed(3), Unsigned(17)}, u"line(3), column(17)"},
        {u"0x%08X", {Signed(static_cast<std::int32_t>(0x80004005u))}, u"0x80004005"},
        {u"%08x", {Unsigned(0xBEEF)}, u"0000beef"},
        {u"%8x|", {Unsigned(0xBEEF)}, u"    beef|"},
        {u"%x", {Unsigned(0)}, u"0"},
        {u"%X", {Signed(-1)}, u"FFFFFFFF"},
        {u"%x", {Signed(INT64_MIN)}, u"8000000000000000"},
        {u"%u", {Signed(-1)}, u"4294967295"},
        {u"%u", {Unsigned(UINT64_MAX)}, u"18446744073709551615"},
        {u"%d", {Signed(INT64_MIN)}, u"-9223372036854775808"},
        {u"%05d", {Signed(-42)}, u"-0042"},
        {u"%5d", {Signed(-42)}, u"  -42"},
        {u"%5s|", {Text(u"ab")}, u"   ab|"},
        {u"%1s|", {Text(u"abc")}, u"abc|"},
        {u"100%%", {}, u"100%"},
        {u"%%s", {Text(u"x")}, u"%s"},
        {u"%s", {Text(u"%d %s")}, u"%d %s"},
        {u"%s", {Text(std::u16string_view(u"a\0b", 3))}, std::u16string_view(u"a\0b", 3)},
    };
    for (const FormatCase& row : cases) {
        EXPECT_EQ(CzuLogger::Format(row.format, row.arguments), row.expected);
    }
}

TEST(LogFormat, WhatIsNoDirectiveOrHasNoArgument_StaysUnchanged)
{
    const FormatCase cases[] = {
        {u"%s and %s", {Text(u"one")}, u"one and %s"},
        {u"%d", {Text(u"one")}, u"%d"},
        {u"%s", {Signed(1)}, u"%s"},
        {u"%d %s", {Text(u"one"), Text(u"two")}, u"%d two"},
        {u"%", {Signed(1)}, u"%"},
        {u"%08", {Signed(1)}, u"%08"},
        {u"%n%p%f", {Signed(1)}, u"%n%p%f"},
        {u"%-5d", {Signed(1)}, u"%-5d"},
        {u"nothing to take", {Signed(1)}, u"nothing to take"},
    };
    for (const FormatCase& row : cases) {
        EXPECT_EQ(CzuLogger::Format(row.format, row.arguments), row.expected);
    }
}

TEST(LogFormat, HugeWidth_DoesNotMakeAHugeText)
{
    const std::vector<LogArgument> arguments{Signed(1)};
    EXPECT_LE(CzuLogger::Format(u"%99999999999999999999d", arguments).size(), 64u);
}

}  // namespace
}  // namespace zupm
