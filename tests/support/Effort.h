/// How long a test that could go on for ever does go on.
#pragma once

#include <cstdlib>

namespace zupm::test {

/// The number in an environment variable, or what suits a run of all tests; scripts/torture sets the variables.
[[nodiscard]] inline int Effort(const char* variable, int otherwise)
{
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : std::atoi(text);
}

}  // namespace zupm::test
