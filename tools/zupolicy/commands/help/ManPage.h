/// Manual pages, made of what the help is made of.
#pragma once

#include <string>
#include <string_view>

#include "tools/zupolicy/commands/Commands.h"

namespace zupm::tool {

/// zupolicy(1). `description` and `footer` are those of the program's help.
[[nodiscard]] std::string ManPageOfProgram(std::string_view description, std::string_view footer);

/// The page of one command, such as zupolicy-set(1).
[[nodiscard]] std::string ManPageOf(const Command& command);

}  // namespace zupm::tool
