/// The table of commands by name.
#pragma once

#include <string_view>

#include "tools/zupolicy/commands/Commands.h"

namespace zupm::tool {

/// Null when there is none.
[[nodiscard]] const Command* FindCommand(std::string_view name);

}  // namespace zupm::tool
