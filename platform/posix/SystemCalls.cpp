#include "platform/posix/SystemCalls.h"

#include <atomic>
#include <cerrno>

namespace zupm::native {

namespace {

constinit std::atomic<const SystemCalls*> g_calls{&kSystemCalls};  // NOLINT(cppcoreguidelines-interfaces-global-init)

}  // namespace

const SystemCalls& Calls() noexcept
{
    return *g_calls.load(std::memory_order_acquire);
}

void ReplaceSystemCalls(const SystemCalls* calls) noexcept
{
    g_calls.store(calls == nullptr ? &kSystemCalls : calls, std::memory_order_release);
}

bool WasInterrupted() noexcept
{
    return errno == EINTR;
}

}  // namespace zupm::native
