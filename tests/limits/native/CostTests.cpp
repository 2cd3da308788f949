// What attacks cost, counted in instructions: no clock, so no other work of the machine, has a part in it.
#include <gtest/gtest.h>

#include "tests/limits/native/AttackCosts.h"

namespace zupm::test {
namespace {

/// A linear cost gives 2, one of n log n at these sizes 2.1; one of n^2 tends to 4 and passes this when it is a quarter
/// of all.
constexpr double kMostGrowth = 2.4;
/// For each byte and each call that reads or writes everything. 16 MiB at this cost keep a processor busy for two
/// seconds.
constexpr double kMostPerByte = 1000;

TEST(Costs, GrowNoFasterThanTheFile_AndAreBoundedForEachByte)
{
    const std::vector<Attack> attacks = AllAttacks();
    const auto costs = CountAttacks(attacks);
    ASSERT_EQ(costs.size(), attacks.size());
    for (const Attack& attack : attacks) {
        SCOPED_TRACE(attack.label);
        const AttackCost& cost = costs.at(attack.label);
        if (cost.half == 0) {
            ADD_FAILURE() << "it did not come to its end";
            continue;
        }
        EXPECT_EQ(cost.code, attack.code);
        EXPECT_LE(cost.Growth(), kMostGrowth);
        EXPECT_LE(cost.PerByte(attack), kMostPerByte * attack.calls);
    }
}

}  // namespace
}  // namespace zupm::test
