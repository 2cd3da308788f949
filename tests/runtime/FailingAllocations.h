/// Allocations that fail on purpose, in this program and in the runtime that it uses.
#pragma once

namespace zupm::test {

/// Makes the allocation with this number fail, counted from 1 on the calling thread, for a scope.
class FailingAllocation {
public:
    explicit FailingAllocation(int number);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether it came to that.
    [[nodiscard]] bool Happened() const;
};

}  // namespace zupm::test
