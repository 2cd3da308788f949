/// The cost of attacks in instructions: the same on a quiet machine and on a busy one.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "tests/limits/Attack.h"

namespace zupm::test {

/// One attack on a file of `attack.countedSize` bytes and on one of half of that.
struct AttackCost {
    HRESULT code = 0;  ///< of the larger file
    std::uint64_t half = 0;
    std::uint64_t full = 0;

    /// The cost of the larger file over that of the smaller: 2 when it is linear, 4 when it is quadratic.
    [[nodiscard]] double Growth() const { return static_cast<double>(full) / static_cast<double>(half); }
    [[nodiscard]] double PerByte(const Attack& attack) const
    {
        return static_cast<double>(full) / static_cast<double>(attack.countedSize);
    }
};

/// The costs by label; both are 0 for an attack that does not end. All instructions of a process count,
/// also those of libraries, but not those of the system. Throws std::runtime_error when nothing could be counted.
[[nodiscard]] std::map<std::string_view, AttackCost> CountAttacks(const std::vector<Attack>& attacks);

}  // namespace zupm::test
