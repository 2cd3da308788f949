#include "tools/zupolicy/report/Colour.h"

#include <cstdlib>
#include <string_view>

namespace zupm::tool {

bool HasColour(StandardStream stream)
{
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    const bool isUnwanted =
        (noColour != nullptr && *noColour != '\0') || (terminal != nullptr && std::string_view(terminal) == "dumb");
    return !isUnwanted && IsTerminal(stream);
}

}  // namespace zupm::tool
