/// How long the tests run that have no natural end.
#pragma once

#include <cstdlib>

namespace zupm::test {

/// The number in an environment variable, or what suits a run of all tests; scripts/torture sets the variables.
[[nodiscard]] inline int Effort(const char* variable, int otherwise)
{
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : std::atoi(text);
}

/// How far one failing call or allocation is from the next: 1 when scripts/torture wants them all, otherwise
/// what suits a run of all tests.
[[nodiscard]] inline int FaultStride(int otherwise)
{
    return Effort("ZUPM_FAULT_STRIDE", otherwise);
}

}  // namespace zupm::test
