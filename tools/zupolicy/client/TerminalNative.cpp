#include <unistd.h>

#include "tools/zupolicy/client/Terminal.h"

namespace zupm::tool {

bool IsTerminal(StandardStream stream) noexcept
{
    return isatty(stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO) == 1;
}

}  // namespace zupm::tool
