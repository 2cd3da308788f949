// Usage: platform_logwriter LEVEL TEXT [COUNT]: logs TEXT at LEVEL, COUNT times.
#include <cstdlib>

#include "common/CzuLogger.h"
#include "text/Utf.h"

int main(int count, char** arguments)
{
    if (count < 3) {
        return 2;
    }
    const int times = count > 3 ? std::atoi(arguments[3]) : 1;
    for (int i = 0; i < times; ++i) {
        zupm::CzuLogger::AddMessageW(0x800, std::atoi(arguments[1]), u"%s", zupm::ToUtf16Lossy(arguments[2]));
    }
    // Without the handlers that run at exit: a leak checker fails in a program that runs with another's rights.
    std::_Exit(0);
}
