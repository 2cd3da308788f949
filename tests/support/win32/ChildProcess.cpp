#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <stdexcept>

#include "tests/support/ChildStreams.h"

namespace zupm::test {
namespace {

std::wstring Wide(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

/// One argument as the program's start-up code takes it apart again: backslashes count only before a quote.
std::wstring Quoted(const std::wstring& argument)
{
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument) {
        text.append(unit == L'"' ? backslashes + 1 : 0, L'\\');
        text.push_back(unit);
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
    }
    text.append(backslashes, L'\\');
    return text + L"\"";
}

HANDLE OutputFile(const std::filesystem::path& path)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                    CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("a program's output file cannot be created");
    }
    return file;
}

int RunAndWait(std::wstring line, const std::filesystem::path& folder, HANDLE out, HANDLE messages)
{
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = out;
    start.hStdError = messages;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &start, &process) ==
        0) {
        throw std::runtime_error("a program cannot be started");
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}

}  // namespace

ChildRun RunChild(const ChildPlace& place, const std::vector<std::string>& arguments)
{
    std::wstring line = Quoted(place.program.wstring());
    for (const std::string& argument : arguments) {
        line += L" " + Quoted(Wide(argument));
    }
    const ChildStreams streams(place.folder);
    const HANDLE out = OutputFile(streams.Out());
    const HANDLE messages = OutputFile(streams.Messages());
    const int exitCode = RunAndWait(line, place.folder, out, messages);
    CloseHandle(out);
    CloseHandle(messages);
    return {exitCode, ChildStreams::TextOf(streams.Out()), ChildStreams::TextOf(streams.Messages())};
}

}  // namespace zupm::test
