// What is promised for hostile files: a code, in time, in memory, at a cost that grows no faster than the file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "tests/limits/AttackRun.h"

namespace zupm::test {

void PrintTo(const Attack& attack, std::ostream* out)
{
    *out << attack.label;
}

namespace {

// An eighth of what is promised for: the cost being linear, the figures of limits_report follow. The sanitizers make
// the component several times slower and its memory their own: under them the codes are what is looked at.
constexpr std::size_t kSize = kLargestAttack / ZUPM_LIMITS_DIVISOR;
/// What is promised is kMostRatio, and limits_report shows it. On these small files, with a coarse clock and a machine
/// that does other things, somewhat more passes; what a cost of n^2 gives, 4, does not.
constexpr double kSurelyNotLinear = 3.5;
constexpr bool kIsMeasured = ZUPM_LIMITS_DIVISOR == 8;

class Limits : public testing::TestWithParam<Attack> {};

TEST_P(Limits, EndsInItsCodeWithinTimeAndMemoryThatGrowWithTheFile)
{
    const Attack& attack = GetParam();
    if (!kIsMeasured) {
        EXPECT_EQ(RunAttack(attack, kSize, 1).code, attack.code);
        return;
    }
    const Measured measured = Measure(attack, kSize);
    EXPECT_EQ(measured.full.code, attack.code);
    EXPECT_LE(measured.full.seconds, MostSeconds(attack));
    EXPECT_LE(measured.full.peakBytes, MostMemory(attack, kSize));
    EXPECT_LT(measured.ratio.value_or(0), kSurelyNotLinear);
}

std::string NameOf(const testing::TestParamInfo<Attack>& info)
{
    std::string name(info.param.label);
    name.erase(
        std::remove_if(name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0 && c != ' '; }),
        name.end());
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(, Limits, testing::ValuesIn(AllAttacks()), NameOf);

}  // namespace
}  // namespace zupm::test
