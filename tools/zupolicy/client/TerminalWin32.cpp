#include <windows.h>

#include <cstdlib>
#include <string_view>

#include "tools/zupolicy/client/Terminal.h"

namespace zupm::tool {

bool IsTerminal(StandardStream stream) noexcept
{
    const HANDLE handle = GetStdHandle(stream == StandardStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 && SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool TakesColours() noexcept
{
    const char* const kind = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): nothing changes the environment
    return kind == nullptr || std::string_view(kind) != "dumb";
}

}  // namespace zupm::tool
