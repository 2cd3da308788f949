#include "platform/CriticalSection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace zupm {
namespace {

/// A number and the lock that guards it.
struct Guarded {
    CCriticalSection lock;
    int number ZUPM_GUARDED_BY(lock) = 0;

    void AddTwiceInside() ZUPM_REQUIRES(lock)
    {
        ++number;
        ++number;
    }
};

TEST(CriticalSection, ManyThreads_EnterOneByOne)
{
    Guarded guarded;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&guarded] {
            for (int n = 0; n < 10'000; ++n) {
                const CriticalSectionLock lock(guarded.lock);
                guarded.AddTwiceInside();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const CriticalSectionLock lock(guarded.lock);
    EXPECT_EQ(guarded.number, 160'000);
}

/// Enters `depth` times, one inside the other.
void Nest(CCriticalSection& section, int depth)
{
    if (depth != 0) {
        const CriticalSectionLock lock(section);
        Nest(section, depth - 1);
    }
}

TEST(CriticalSection, ItsOwner_EntersAgainAndLeavesAsOften)
{
    CCriticalSection section;
    Nest(section, 100);
    // Another thread gets in only when every entry was left.
    std::atomic<bool> entered{false};
    std::thread other([&] {
        const CriticalSectionLock lock(section);
        entered = true;
    });
    other.join();
    EXPECT_TRUE(entered);
}

TEST(CriticalSection, AnotherThread_WaitsUntilTheOutermostEntryIsLeft)
{
    CCriticalSection section;
    std::atomic<bool> entered{false};
    std::thread other;
    {
        const CriticalSectionLock outer(section);
        Nest(section, 3);
        other = std::thread([&] {
            const CriticalSectionLock lock(section);
            entered = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_FALSE(entered);
    }
    other.join();
    EXPECT_TRUE(entered);
}

}  // namespace
}  // namespace zupm
