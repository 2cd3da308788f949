#include "common/TimeStamp.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zupm {
namespace {

using std::chrono::system_clock;

class TimeStamp : public testing::Test {
protected:
    ~TimeStamp() override { SetClock(nullptr); }
};

TEST_F(TimeStamp, Epoch_HasFourteenDigits)
{
    SetClock([] { return system_clock::time_point{}; });
    EXPECT_EQ(cmnblib_CurrentTimeToGMTTimeStamp(), u"19700101000000");
}

TEST_F(TimeStamp, KnownSecond_IsWrittenYearToSecond)
{
    SetClock([] { return system_clock::from_time_t(1795225683); });
    EXPECT_EQ(cmnblib_CurrentTimeToGMTTimeStamp(), u"20261121014803");
}

TEST_F(TimeStamp, LeapDay_Exists)
{
    SetClock([] { return system_clock::from_time_t(951782399); });
    EXPECT_EQ(cmnblib_CurrentTimeToGMTTimeStamp(), u"20000228235959");
    SetClock([] { return system_clock::from_time_t(951782400); });
    EXPECT_EQ(cmnblib_CurrentTimeToGMTTimeStamp(), u"20000229000000");
}

TEST_F(TimeStamp, FractionsOfASecond_AreCutOff)
{
    SetClock([] { return system_clock::from_time_t(1) + std::chrono::milliseconds(999); });
    EXPECT_EQ(cmnblib_CurrentTimeToGMTTimeStamp(), u"19700101000001");
}

TEST_F(TimeStamp, TheSystemsClock_GrowsWithTime)
{
    SetClock(nullptr);
    const std::u16string first = cmnblib_CurrentTimeToGMTTimeStamp();
    const std::u16string second = cmnblib_CurrentTimeToGMTTimeStamp();
    EXPECT_EQ(first.size(), 14u);
    EXPECT_TRUE(std::ranges::all_of(first, [](char16_t unit) { return unit >= u'0' && unit <= u'9'; }));
    EXPECT_GT(first, u"20200101000000");
    EXPECT_LE(first, second);
}

}  // namespace
}  // namespace zupm
