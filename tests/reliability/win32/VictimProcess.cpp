#include "tests/reliability/VictimProcess.h"

#include <windows.h>

#include <filesystem>
#include <new>
#include <stdexcept>
#include <utility>

namespace zupm::test {

/// A victim is a program of its own; the memory that it shares has a name, which is passed to it.
struct VictimProcess::System {
    std::wstring name;
    HANDLE mapping = nullptr;
    KillProgress* progress = nullptr;
    HANDLE process = nullptr;
};

VictimProcess::VictimProcess() : m_system(new System)
{
    m_system->name = L"zupm-victim-" + std::to_wstring(GetCurrentProcessId());
    m_system->mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(KillProgress),
                                           m_system->name.c_str());
    void* shared = MapViewOfFile(m_system->mapping, FILE_MAP_WRITE, 0, 0, sizeof(KillProgress));
    if (shared == nullptr) {
        throw std::runtime_error("no shared memory");
    }
    m_system->progress = new (shared) KillProgress{};
}

VictimProcess::~VictimProcess()
{
    if (m_system->process != nullptr) {
        Kill();
    }
    UnmapViewOfFile(m_system->progress);
    CloseHandle(m_system->mapping);
}

KillProgress& VictimProcess::Progress()
{
    return *m_system->progress;
}

void VictimProcess::Start(PolicyFileClient&, const std::u16string& path, WayOfWriting way)
{
    std::wstring line = L"\"" + std::filesystem::path(ZUPM_VICTIM).wstring() + L"\" " + m_system->name + L" " +
                        std::to_wstring(static_cast<int>(way)) + L" \"" + std::filesystem::path(path).wstring() + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process) == 0) {
        throw std::runtime_error("the victim cannot be started, error " + std::to_string(GetLastError()));
    }
    CloseHandle(process.hThread);
    m_system->process = process.hProcess;
}

void VictimProcess::Kill()
{
    constexpr UINT kKilled = 0x4B;
    const HANDLE process = std::exchange(m_system->process, nullptr);
    DWORD exitCode = 0;
    const bool isKilled = TerminateProcess(process, kKilled) != 0;
    WaitForSingleObject(process, INFINITE);
    GetExitCodeProcess(process, &exitCode);
    CloseHandle(process);
    if (!isKilled || exitCode != kKilled) {
        throw std::runtime_error("the victim ended by itself, its last result " + std::to_string(Progress().failure));
    }
}

}  // namespace zupm::test
