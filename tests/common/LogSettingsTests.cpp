#include "common/LogSettings.h"

#include <gtest/gtest.h>

#include <string_view>

namespace zupm {
namespace {

TEST(LogSettings, ALevelAndPerhapsAFile)
{
    const struct {
        std::string_view value;
        LogSettings settings;
    } rows[] = {
        {"", {0, ""}},
        {"0", {0, ""}},
        {"7", {7, ""}},
        {"007", {7, ""}},
        {"999999999", {999'999'999, ""}},
        {"8:", {8, ""}},
        {"8:log", {8, "log"}},
        {"8:/var/log/a:b", {8, "/var/log/a:b"}},
        {"1:C:\\Temp\\zu.log", {1, "C:\\Temp\\zu.log"}},
        {"0:log", {0, "log"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseLogSettings(row.value), row.settings) << row.value;
    }
}

TEST(LogSettings, EveryOtherFormIsRefused)
{
    for (const std::string_view value : {"off", "debug", "-1", "+1", " 1", "1 ", "7x", "7x:log", ":log", "C:\\zu.log",
                                         "/tmp/log", "1234567890", "1;log"}) {
        EXPECT_EQ(ParseLogSettings(value), std::nullopt) << value;
    }
}

}  // namespace
}  // namespace zupm
