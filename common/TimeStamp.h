/// Time stamps of the policy file's versions.
#pragma once

#include <chrono>
#include <string>

namespace zupm {

/// The current GMT time as 14 digits, year to second: 20261121014803.
[[nodiscard]] std::u16string cmnblib_CurrentTimeToGMTTimeStamp();

/// A clock for the whole process; null restores the system's. For tests.
using Clock = std::chrono::system_clock::time_point (*)();
void SetClock(Clock clock) noexcept;

}  // namespace zupm
