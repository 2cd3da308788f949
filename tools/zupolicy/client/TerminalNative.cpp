#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "tools/zupolicy/client/Terminal.h"

namespace zupm::tool {

bool IsTerminal(StandardStream stream) noexcept
{
    return isatty(stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

bool TakesColours() noexcept
{
    const char* const kind = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): nothing changes the environment
    return kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

}  // namespace zupm::tool
