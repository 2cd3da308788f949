#include "tools/zupolicy/report/Colour.h"

#include <cstdlib>

namespace zupm::tool {

bool HasColour(StandardStream stream)
{
    const char* const noColour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): nothing changes it
    const bool isUnwanted = noColour != nullptr && *noColour != '\0';
    return !isUnwanted && TakesColours() && IsTerminal(stream);
}

}  // namespace zupm::tool
