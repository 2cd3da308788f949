/// Announcing the classes of the component that is linked into this program, on either target.
#pragma once

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

[[nodiscard]] HRESULT AnnounceTestClasses();
void WithdrawTestClasses();

}  // namespace zupm::test
