// apply and a real event of the console.
#include <windows.h>

#include "tests/tool/EditsTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

/// The tool in a process group of its own, so that the event is for it alone.
class StartedTool {
public:
    StartedTool(const std::filesystem::path& folder, const std::wstring& arguments)
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE out = CreateFileW((folder / "out").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0,
                                 nullptr);
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = out;
        start.hStdError = out;
        std::wstring line = L"\"" + std::filesystem::path(ZUPM_TOOL).wstring() + L"\" " + arguments;
        m_isStarted = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                                     folder.c_str(), &start, &m_process) != 0;
        CloseHandle(out);
    }
    ~StartedTool()
    {
        if (m_isStarted) {
            TerminateProcess(m_process.hProcess, 99);
            CloseHandle(m_process.hProcess);
            CloseHandle(m_process.hThread);
        }
    }
    StartedTool(const StartedTool&) = delete;
    StartedTool& operator=(const StartedTool&) = delete;

    [[nodiscard]] bool IsStarted() const { return m_isStarted; }
    [[nodiscard]] bool Break() const { return GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, m_process.dwProcessId) != 0; }
    /// The exit code; -1 when the tool goes on.
    [[nodiscard]] int Wait(DWORD milliseconds) const
    {
        DWORD code = 0;
        const bool isOver = WaitForSingleObject(m_process.hProcess, milliseconds) == WAIT_OBJECT_0;
        return isOver && GetExitCodeProcess(m_process.hProcess, &code) != 0 ? static_cast<int>(code) : -1;
    }

private:
    PROCESS_INFORMATION m_process{};
    bool m_isStarted = false;
};

class ConsoleApply : public EditsTest {};

TEST_F(ConsoleApply, CtrlBreak_EndsTheRunAfterTheFilesThatAreBeingWritten)
{
    // A console of the test's own, when it has none: the event goes to the programs of one console.
    const bool isOwn = AllocConsole() != 0;
    Folder().Write(u"edits.jsonl",
                   R"({"edit":"set","softwareId":"PRODUCTA1000","section":"General","name":"Enabled","value":"0"})");
    Folder().Write(u"1.xml", Bytes());
    Folder().Write(u"2.xml", Bytes());
    Folder().Write(u"3.xml", Bytes());
    const std::string before = Bytes();
    HeldFile lock;
    ASSERT_EQ(lock.Open(Folder().Path(u"2.xml")), result::Success);
    ASSERT_EQ(lock.TryLock(), result::Success);
    const StartedTool tool(Folder().Folder(), L"apply 1.xml 2.xml 3.xml --edits edits.jsonl --lock-timeout 60");
    ASSERT_TRUE(tool.IsStarted());
    for (int tries = 0; tries < 1000 && Bytes(u"out").empty(); ++tries) {
        ASSERT_EQ(tool.Wait(20), -1) << Bytes(u"out");
    }
    ASSERT_TRUE(tool.Break()) << GetLastError();
    EXPECT_EQ(tool.Wait(20'000), 4);
    EXPECT_EQ(Bytes(u"out"),
              "1.xml: changed (1 edit)\n2.xml: not done\n3.xml: not done\n"
              "1 changed, 0 unchanged, 0 failed, 2 not done\n"
              "zupolicy: interrupted; the files that are not done are as they were\n");
    EXPECT_NE(Bytes(u"1.xml"), before);
    EXPECT_EQ(Bytes(u"2.xml"), before);
    EXPECT_EQ(Bytes(u"3.xml"), before);
    if (isOwn) {
        FreeConsole();
    }
}

}  // namespace
}  // namespace zupm::test
