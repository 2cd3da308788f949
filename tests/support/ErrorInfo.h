/// The error information that a failing call leaves for its thread.
#pragma once

#include <string>

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// What the thread has; taking it clears it.
struct ErrorInformation {
    bool present = false;
    std::u16string description;
    std::u16string source;
    GUID interfaceId{};
};

[[nodiscard]] ErrorInformation TakeErrorInformation();

/// Leaves information that a later call is expected to replace or clear.
void LeaveStaleErrorInformation();

}  // namespace zupm::test
