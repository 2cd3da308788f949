/// The classes that the module offers.
#pragma once

#include "com/ObjectMap.h"

namespace zupm {

/// The object map; its order is the order of look-up and registration.
[[nodiscard]] ObjectMap ModuleObjects() noexcept;

}  // namespace zupm
