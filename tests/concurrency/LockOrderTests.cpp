// The thread sanitizer watches the order in which locks are taken: a proof that it sees ours. Built with it alone.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <thread>

#include "platform/CriticalSection.h"

namespace zupm::test {

namespace {

void TakeBoth(CCriticalSection& first, CCriticalSection& second)
{
    const CriticalSectionLock outer(first);
    const CriticalSectionLock inner(second);
}

/// Never at the same time, so that nothing blocks: the orders alone are what is wrong.
void TakeInBothOrders()
{
    CCriticalSection one;
    CCriticalSection two;
    std::thread(TakeBoth, std::ref(one), std::ref(two)).join();
    std::thread(TakeBoth, std::ref(two), std::ref(one)).join();
}

}  // namespace

TEST(LockOrder, TwoSectionsTakenInBothOrders_AreReported)
{
    constexpr int kReported = 66;
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            TakeInBothOrders();
            std::exit(0);
        },
        testing::ExitedWithCode(kReported), "lock-order-inversion");
}

}  // namespace zupm::test
