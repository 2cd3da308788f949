// What is promised for hostile files: a code, in memory that grows no faster than the file.
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

// An eighth of what is promised for: memory being linear, the figures of limits_report follow. Under the sanitizers
// memory is their own, and only the codes are compared. What an attack costs is counted elsewhere
// (native/CostTests.cpp): the clock of a machine that does other work is no measure of it.
constexpr std::size_t kSize = kLargestAttack / ZUPM_LIMITS_DIVISOR;
constexpr bool kIsMeasured = ZUPM_LIMITS_DIVISOR == 8;

class Limits : public testing::TestWithParam<Attack> {};

TEST_P(Limits, EndsInItsCodeWithinMemoryThatGrowsWithTheFile)
{
    const Attack& attack = GetParam();
    const AttackRun run = RunAttack(attack, kSize);
    EXPECT_EQ(run.code, attack.code);
    if (kIsMeasured) {
        EXPECT_LE(run.peakBytes, MostMemory(attack, kSize));
    }
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
