#include "tests/runtime/FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations until the one that fails; 0 when none does (any more).
thread_local int t_untilFailure = 0;

void* Allocate(std::size_t size) noexcept
{
    const bool fails = t_untilFailure > 0 && --t_untilFailure == 0;
    return fails ? nullptr : std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size)
{
    void* memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

namespace zupm::test {

FailingAllocation::FailingAllocation(int number)
{
    t_untilFailure = number;
}

FailingAllocation::~FailingAllocation()
{
    t_untilFailure = 0;
}

bool FailingAllocation::Happened() const
{
    return t_untilFailure == 0;
}

}  // namespace zupm::test
