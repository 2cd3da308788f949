#include "tests/windows/Registration.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace zupm::test {

std::wstring BesideProgram(const std::wstring& name)
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of(L"\\/") + 1);
    return path + name;
}

std::wstring ModulePath()
{
    return BesideProgram(L"zuPolicyManager64.dll");
}

unsigned long RunProgram(std::wstring commandLine)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
        0) {
        throw std::runtime_error("cannot start " + Narrow(commandLine) + ": error " + std::to_string(GetLastError()));
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return code;
}

unsigned long RunRegistration(const std::vector<std::wstring>& options)
{
    std::wstring commandLine = L"regsvr32 /s";
    for (const std::wstring& option : options) {
        commandLine.append(L" ").append(option);
    }
    return RunProgram(commandLine.append(L" \"").append(ModulePath()).append(L"\""));
}

std::string Narrow(const std::wstring& text)
{
    std::string narrow(text.size(), '?');
    std::ranges::transform(text, narrow.begin(),
                           [](wchar_t unit) { return unit < 128 ? static_cast<char>(unit) : '?'; });
    return narrow;
}

}  // namespace zupm::test
