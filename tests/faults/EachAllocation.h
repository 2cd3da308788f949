/// Runs something with its first, its second, ... allocation failing.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/FailingAllocations.h"

namespace zupm::test {

/// `prepare` makes what the operation works on, anew each time; `run` is the operation; `look` sees what it left, also
/// the last time, when no allocation failed.
template <class Prepare, class Run, class Look>
void WithEachAllocationFailing(Prepare prepare, Run run, Look look)
{
    constexpr int kMostAllocations = 100'000;
    bool happened = true;
    for (int number = 1; happened && !testing::Test::HasFatalFailure(); ++number) {
        ASSERT_LT(number, kMostAllocations) << "it never passed";
        SCOPED_TRACE(testing::Message() << "allocation " << number);
        auto stage = prepare();
        {
            const FailingAllocation failing(number);
            run(*stage);
            happened = failing.Happened();
        }
        look(*stage);
    }
}

}  // namespace zupm::test
