/// What the tests of the component's limits and of the tool's limits share.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>

#include "tests/limits/AttackRun.h"

namespace zupm::test {

/// An eighth of the largest size: memory grows linearly, so the figures of limits_report follow from it.
inline constexpr std::size_t kTestedSize = kLargestAttack / ZUPM_LIMITS_DIVISOR;
/// The sanitizers add memory of their own, so only the codes are compared under them.
inline constexpr bool kIsMeasured = ZUPM_LIMITS_DIVISOR == 8;

/// A label as the name of a test: its letters and digits, with '_' for a blank.
[[nodiscard]] inline std::string TestName(std::string label)
{
    std::erase_if(label, [](unsigned char c) { return std::isalnum(c) == 0 && c != ' '; });
    std::replace(label.begin(), label.end(), ' ', '_');
    return label;
}

}  // namespace zupm::test
