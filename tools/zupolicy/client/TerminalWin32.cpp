#include <windows.h>

#include "tools/zupolicy/client/Terminal.h"

namespace zupm::tool {

bool IsTerminal(StandardStream stream) noexcept
{
    const HANDLE handle = GetStdHandle(stream == StandardStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 && SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace zupm::tool
