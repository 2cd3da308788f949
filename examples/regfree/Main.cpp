/// Uses the component without registration. The program's manifest names the component's assembly; the manifest of the
/// assembly lies beside the DLL in the program's folder.
///
/// Usage: regfree FILE      prints the interval of a product's policy and the first task
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <stdexcept>

#include "UseComponent.h"

int wmain(int count, wchar_t** arguments)
{
    if (count != 2) {
        std::fputs("usage: regfree FILE\n", stderr);
        return 2;
    }
    int exitCode = 1;
    // A single-threaded apartment, so that the calls are marshalled: marshalling works without registration too.
    if (CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) >= 0) {
        try {
            Show(arguments[1]);
            exitCode = 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "regfree: %s\n", error.what());
        }
        CoUninitialize();
    }
    return exitCode;
}
