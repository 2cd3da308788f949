/// The commands as JSON.
#pragma once

#include <span>
#include <string>

#include "tools/zupolicy/commands/Commands.h"

namespace zupm::tool {

/// What the help says about these commands, as one document.
[[nodiscard]] std::string HelpAsJson(std::span<const Command* const> commands);

}  // namespace zupm::tool
