// The cost of attacks, counted in instructions: no clock takes part, so other work of the machine does not matter.
#include <gtest/gtest.h>

#include "tests/limits/native/AttackCosts.h"

namespace zupm::test {
namespace {

/// Linear cost gives 2, and n log n gives 2.1 at these sizes. Quadratic cost tends to 4 and exceeds this limit once it
/// is a quarter of the whole.
constexpr double kMostGrowth = 2.4;
/// For each byte and each call that reads or writes everything. At this cost, 16 MiB keep a processor busy for
/// two seconds.
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
            ADD_FAILURE() << "it did not end";
            continue;
        }
        EXPECT_EQ(cost.code, attack.code);
        EXPECT_LE(cost.Growth(), kMostGrowth);
        EXPECT_LE(cost.PerByte(attack), kMostPerByte * attack.calls);
    }
}

}  // namespace
}  // namespace zupm::test
