#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <mutex>
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

/// No handle for no file.
HANDLE InputFile(const std::filesystem::path& path)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE file =
        path.empty() ? nullptr
                     : CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, &inherited, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("a program's input file cannot be opened");
    }
    return file;
}

HANDLE Start(std::wstring line, const ChildPlace& place, const ChildStreams& streams)
{
    // A program inherits every handle that can be, those of another program's streams too, and their files could not be
    // removed while it runs. So such handles exist for one start at a time.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = InputFile(place.input);
    start.hStdOutput = OutputFile(streams.Out());
    start.hStdError = OutputFile(streams.Messages());
    PROCESS_INFORMATION process{};
    // On a busy machine Wine sometimes fails to start a program; the next try succeeds.
    bool isStarted = false;
    for (int tries = 0; !isStarted && tries < 3; ++tries) {
        std::wstring copy = line;
        isStarted = CreateProcessW(nullptr, copy.data(), nullptr, nullptr, TRUE, 0, nullptr, place.folder.c_str(),
                                   &start, &process) != 0;
    }
    if (start.hStdInput != nullptr) {
        CloseHandle(start.hStdInput);
    }
    CloseHandle(start.hStdOutput);
    CloseHandle(start.hStdError);
    if (!isStarted) {
        throw std::runtime_error("a program cannot be started");
    }
    CloseHandle(process.hThread);
    return process.hProcess;
}

int Wait(HANDLE process)
{
    WaitForSingleObject(process, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process, &exitCode);
    CloseHandle(process);
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
    const int exitCode = Wait(Start(line, place, streams));
    return {exitCode, ChildStreams::TextOf(streams.Out()), ChildStreams::TextOf(streams.Messages())};
}

}  // namespace zupm::test
