/// Attacks in processes of their own.
#pragma once

#include <cstdint>
#include <optional>

#include "tests/limits/Attack.h"

namespace zupm::test {

/// What one attack came to.
struct AttackRun {
    HRESULT code = 0;
    double seconds = 0;  ///< processor time, the least of the repetitions
    std::uint64_t peakBytes = 0;
};

/// Makes the attack's file of `size` bytes and runs the attack `repeats` times. Throws std::runtime_error when the
/// process did not come to its end: it crashed or took too long.
[[nodiscard]] AttackRun RunAttack(const Attack& attack, std::size_t size, int repeats);

/// The attack at one size, and how much longer it took than at half of that.
struct Measured {
    AttackRun full;
    /// Nothing when it was too quick to be compared.
    std::optional<double> ratio;
};

/// Runs it at `size` and at half of it. Where time or ratio are above what is promised it runs again: the machine's
/// other work might have disturbed a run.
[[nodiscard]] Measured Measure(const Attack& attack, std::size_t size);

// --- what is promised for files of up to 16 MiB ----------------------------------------------------------------------

inline constexpr std::size_t kLargestAttack = std::size_t{16} << 20;
inline constexpr double kMostRatio = 2.5;
[[nodiscard]] constexpr double MostSeconds(const Attack& attack)
{
    return 2.0 * attack.calls;
}
[[nodiscard]] constexpr std::uint64_t MostMemory(const Attack& attack, std::size_t size)
{
    return (std::uint64_t{64} << 20) + 8 * std::uint64_t{size} * static_cast<std::uint64_t>(attack.documents);
}

}  // namespace zupm::test
