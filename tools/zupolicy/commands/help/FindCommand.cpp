#include "tools/zupolicy/commands/help/FindCommand.h"

#include <algorithm>

namespace zupm::tool {

const Command* FindCommand(std::string_view name)
{
    const auto* const found =
        std::ranges::find_if(kCommands, [&](const Command* command) { return command->name == name; });
    return found == std::end(kCommands) ? nullptr : *found;
}

}  // namespace zupm::tool
