// What is promised for hostile files holds for the command line tool, too. The tool is the same on both targets; its
// memory is measured natively, where the system reports that of a process that has ended.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "tests/limits/AttackRun.h"
#include "tests/limits/ToolRun.h"

namespace zupm::test {

void PrintTo(const ToolAttack& attack, std::ostream* out)
{
    *out << attack.command.front() << ": " << attack.file;
}

namespace {

constexpr std::size_t kSize = kLargestAttack / ZUPM_LIMITS_DIVISOR;
constexpr bool kIsMeasured = ZUPM_LIMITS_DIVISOR == 8;

class ToolLimits : public testing::TestWithParam<ToolAttack> {};

TEST_P(ToolLimits, EndsInItsExitCodeWithinMemory)
{
    const ToolAttack& attack = GetParam();
    const ToolCost cost = RunToolAttack(attack, kSize);
    EXPECT_EQ(cost.exitCode, attack.exitCode);
    if (kIsMeasured) {
        EXPECT_LE(cost.peakBytes, (std::uint64_t{64} << 20) + 8 * kSize * static_cast<std::size_t>(attack.documents));
    }
}

std::string NameOf(const testing::TestParamInfo<ToolAttack>& info)
{
    std::string name =
        std::to_string(info.index) + " " + info.param.command.front() + " " + std::string(info.param.file);
    name.erase(
        std::remove_if(name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0 && c != ' '; }),
        name.end());
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(, ToolLimits, testing::ValuesIn(ToolAttacks().begin(), ToolAttacks().end()), NameOf);

}  // namespace
}  // namespace zupm::test
