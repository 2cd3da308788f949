/// What a process that is about to be killed reports about itself.
#pragma once

#include <atomic>
#include <cstdint>

namespace zupm::test {

/// It is in memory that the victim and its killer share. Versions only count up.
struct KillProgress {
    /// The version that is being written, or was last.
    std::atomic<std::uint32_t> begun;
    /// The version whose writing has returned; one less than `begun` while the victim is inside.
    std::atomic<std::uint32_t> completed;
    /// What WriteFile gave when it failed, which ends the victim.
    std::atomic<std::int32_t> failure;
};

static_assert(std::atomic<std::uint32_t>::is_always_lock_free);

}  // namespace zupm::test
