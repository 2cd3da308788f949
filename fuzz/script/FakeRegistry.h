/// The registry that registration scripts write to in a fuzzer: one in memory instead of the system's.
#pragma once

#include "comrt/RegistryText.h"

namespace zupm::fuzz {

/// The registry that the functions of module/Registry.h work on in this process.
[[nodiscard]] runtime::RegistryText& FakeRegistry();

}  // namespace zupm::fuzz
