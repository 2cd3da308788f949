#include "tests/support/FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace zupm::test {

namespace {

/// What fails, counted down to zero.
struct Countdown {
    int untilFailure = 0;  ///< 0: none (any more)
    bool forEver = false;
    bool happened = false;
};

thread_local Countdown t_countdown;
thread_local long t_live = 0;

bool IsTurnToFail() noexcept
{
    if (t_countdown.happened) {
        return t_countdown.forEver;
    }
    t_countdown.happened = t_countdown.untilFailure > 0 && --t_countdown.untilFailure == 0;
    return t_countdown.happened;
}

}  // namespace

FailingAllocation::FailingAllocation(int number, bool forEver)
{
    t_countdown = {number, forEver, false};
}

FailingAllocation::~FailingAllocation()
{
    t_countdown = {};
}

bool FailingAllocation::Happened() const
{
    return t_countdown.happened;
}

long LiveAllocations()
{
    return t_live;
}

void* AllocateOrFail(std::size_t size) noexcept
{
    void* const memory = IsTurnToFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
    t_live += memory != nullptr ? 1 : 0;
    return memory;
}

void* ReallocateOrFail(void* memory, std::size_t size) noexcept
{
    if (memory == nullptr) {
        return AllocateOrFail(size);
    }
    return IsTurnToFail() ? nullptr : std::realloc(memory, size == 0 ? 1 : size);
}

void FreeAllocated(void* memory) noexcept
{
    t_live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

}  // namespace zupm::test

using zupm::test::AllocateOrFail;
using zupm::test::FreeAllocated;

void* operator new(std::size_t size)
{
    void* const memory = AllocateOrFail(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return AllocateOrFail(size);
}

void operator delete(void* memory) noexcept
{
    FreeAllocated(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    FreeAllocated(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    FreeAllocated(memory);
}
