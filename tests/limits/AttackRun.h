/// Attacks in processes of their own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/limits/Attack.h"

namespace zupm::test {

/// The result of one attack.
struct AttackRun {
    HRESULT code = 0;
    double seconds = 0;  ///< processor time: for reports, no test compares it
    std::uint64_t peakBytes = 0;
};

/// Makes the attack's file of `size` bytes and runs the attack. Throws std::runtime_error when the process crashed or
/// took too long.
[[nodiscard]] AttackRun RunAttack(const Attack& attack, std::size_t size);

// --- what is promised for files of up to 16 MiB ----------------------------------------------------------------------

inline constexpr std::size_t kLargestAttack = std::size_t{16} << 20;
/// For a process that holds that many documents of `size` bytes at once.
[[nodiscard]] constexpr std::uint64_t MostMemory(int documents, std::size_t size)
{
    return (std::uint64_t{64} << 20) + 8 * std::uint64_t{size} * static_cast<std::uint64_t>(documents);
}

}  // namespace zupm::test
