#include <windows.h>

#include <stdexcept>

#include "ToolProcess.h"
#include "tests/support/TempFolder.h"

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
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("the tool's output file cannot be created");
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
        throw std::runtime_error("the tool cannot be started");
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}

std::string Take(const std::filesystem::path& file)
{
    std::string text = ReadBytes(file.u16string());
    std::filesystem::remove(file);
    return text;
}

}  // namespace

ToolRun RunTool(const ToolPlace& place, const std::vector<std::string>& arguments)
{
    std::wstring line = Quoted(std::filesystem::path(ZUPM_TOOL).wstring());
    for (const std::string& argument : arguments) {
        line += L" " + Quoted(Wide(argument));
    }
    const std::filesystem::path out = place.folder / ".out";
    const std::filesystem::path messages = place.folder / ".messages";
    const HANDLE outFile = OutputFile(out);
    const HANDLE messagesFile = OutputFile(messages);
    const int exitCode = RunAndWait(line, place.folder, outFile, messagesFile);
    CloseHandle(outFile);
    CloseHandle(messagesFile);
    return {exitCode, Take(out), Take(messages)};
}

}  // namespace zupm::test
