// A library that leaves a trace when it is loaded as one.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)
{
    wchar_t trace[1024];
    if (GetEnvironmentVariableW(L"ZUPM_TRACE", trace, 1024) != 0) {
        CloseHandle(CreateFileW(trace, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    return TRUE;
}
