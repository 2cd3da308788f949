/// Names of result codes, for messages that people search for.
#pragma once

#include <zuPolicyManager/Results.h>

#include <string>

namespace zupm::tool {

/// The constant's name in the public header; "unknown code" for a code that has none.
[[nodiscard]] std::string NameOf(result::Code code);

}  // namespace zupm::tool
