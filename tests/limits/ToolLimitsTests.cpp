// Hostile files and the command line tool: each command ends in its exit code, in memory that grows no faster than the
// file. The tool is the same on both targets; only the native system reports the memory of a process that has ended.
#include <gtest/gtest.h>

#include <string>

#include "tests/limits/AttackRun.h"
#include "tests/limits/LimitsTest.h"
#include "tests/limits/ToolRun.h"

namespace zupm::test {

void PrintTo(const ToolAttack& attack, std::ostream* out)
{
    *out << attack.command.front() << ": " << attack.file;
}

namespace {

class ToolLimits : public testing::TestWithParam<ToolAttack> {};

TEST_P(ToolLimits, EndsInItsExitCodeWithinMemoryThatGrowsWithTheFile)
{
    const ToolAttack& attack = GetParam();
    const ToolCost cost = RunToolAttack(attack, kTestedSize);
    EXPECT_EQ(cost.exitCode, attack.exitCode);
    if (kIsMeasured) {
        EXPECT_LE(cost.peakBytes, MostMemory(attack.documents, kTestedSize));
    }
}

std::string NameOf(const testing::TestParamInfo<ToolAttack>& info)
{
    return TestName(std::to_string(info.index) + " " + info.param.command.front() + " " + std::string(info.param.file));
}

INSTANTIATE_TEST_SUITE_P(, ToolLimits, testing::ValuesIn(ToolAttacks().begin(), ToolAttacks().end()), NameOf);

}  // namespace
}  // namespace zupm::test
