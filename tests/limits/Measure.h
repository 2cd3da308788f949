/// What the running process has used so far.
#pragma once

#include <cstdint>

namespace zupm::test {

/// Processor time of all its threads, in seconds.
[[nodiscard]] double ProcessorSeconds();

/// The most memory that it ever had in use at once, in bytes.
[[nodiscard]] std::uint64_t PeakMemory();

}  // namespace zupm::test
