// A hostile file ends in its code, in memory that grows no faster than the file. The clock of a machine that does other
// work cannot measure what an attack costs: native/CostTests.cpp counts that in instructions.
#include <gtest/gtest.h>

#include <string>

#include "tests/limits/AttackRun.h"
#include "tests/limits/LimitsTest.h"

namespace zupm::test {

void PrintTo(const Attack& attack, std::ostream* out)
{
    *out << attack.label;
}

namespace {

class Limits : public testing::TestWithParam<Attack> {};

TEST_P(Limits, EndsInItsCodeWithinMemoryThatGrowsWithTheFile)
{
    const Attack& attack = GetParam();
    const AttackRun run = RunAttack(attack, kTestedSize);
    EXPECT_EQ(run.code, attack.code);
    if (kIsMeasured) {
        EXPECT_LE(run.peakBytes, MostMemory(attack.documents, kTestedSize));
    }
}

std::string NameOf(const testing::TestParamInfo<Attack>& info)
{
    return TestName(std::string(info.param.label));
}

INSTANTIATE_TEST_SUITE_P(, Limits, testing::ValuesIn(AllAttacks()), NameOf);

}  // namespace
}  // namespace zupm::test
