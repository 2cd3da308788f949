/// Names for temporary files.
#pragma once

#include <string>

#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// Appends 128 random bits as hexadecimal digits. InputOutputError when the system has none.
[[nodiscard]] result::Code AppendUnguessable(std::u16string& name);

/// A file name that nobody can guess, from the system's random numbers.
[[nodiscard]] result::Code UnguessableName(std::u16string& name);

}  // namespace zupm::win32
