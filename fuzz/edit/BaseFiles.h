/// The policy files that are edited.
#pragma once

#include <string>

#include "fuzz/support/Input.h"

namespace zupm::fuzz {

/// The bytes of a file: the sample in any encoding with any line ends, or the input's own bytes.
[[nodiscard]] std::string MakeBaseFile(Input& input);

}  // namespace zupm::fuzz
