#include "com/ModuleLock.h"

#include <atomic>
#include <cstdint>

namespace zupm {

namespace {
constinit std::atomic<std::int64_t> g_locks = 0;
}

void LockModule() noexcept
{
    g_locks.fetch_add(1, std::memory_order_relaxed);
}

void UnlockModule() noexcept
{
    g_locks.fetch_sub(1, std::memory_order_release);
}

bool IsModuleLocked() noexcept
{
    return g_locks.load(std::memory_order_acquire) != 0;
}

}  // namespace zupm
