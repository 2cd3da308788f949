// Opening, reading, locking and replacing a file through what was opened once, on Windows.
#include <chrono>
#include <thread>

#include "HeldFileTest.h"
#include "platform/Files.h"
#include "tests/windows/Registration.h"

namespace zupm::test {
namespace {

TEST_F(HeldFileTest, Replace_PutsTheNewFileInPlaceOfTheOneThatWasRead)
{
    HeldFile file = Edit();
    EXPECT_EQ(file.CheckUnchanged(m_old), result::Success);
    EXPECT_EQ(file.RehearseReplace(), result::Success);
    ExpectAlone("old");
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    EXPECT_EQ(file.CheckUnchanged(m_old), result::FileChanged);
    ExpectAlone("new");
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(LockAnother(), result::Success);
}

TEST_F(HeldFileTest, Read_ReturnsEmptyAndLargeFilesWholeAndAgain)
{
    // One piece of the comparison, and one byte around it.
    for (const std::size_t size : {0U, 65535U, 65536U, 65537U, 200000U}) {
        const std::string text(size, 'x');
        m_folder.Write(u"file", text);
        HeldFile file;
        ASSERT_EQ(file.Open(Path()), result::Success);
        for (int round = 0; round < 2; ++round) {
            std::string bytes = "poison";
            EXPECT_EQ(file.Read(bytes), result::Success) << size;
            EXPECT_TRUE(bytes == text) << size;
            EXPECT_EQ(file.CheckUnchanged(text), result::Success) << size;
        }
    }
}

TEST_F(HeldFileTest, Open_RefusesWhatIsNoFileThatMayBeWritten)
{
    struct Row {
        std::u16string path;
        result::Code code;
    };
    const Row rows[] = {
        {Path(u"none"), result::FileNotFound},
        {Path(u"none\\file"), result::PathNotFound},
        {m_folder.Folder().u16string(), result::AccessDenied},
        {u"", result::InvalidName},
        {std::u16string(u"a\0b", 3), result::InvalidName},
        {u"NUL", result::NotSupported},
        {u"\\\\.\\NUL", result::NotSupported},
        {u"CON", result::NotSupported},
        {u"\\\\.\\pipe\\zupm-held-file", result::NotSupported},
        {u"\\\\server\\pipe\\zupm-held-file", result::NotSupported},
    };
    for (const Row& row : rows) {
        HeldFile file;
        EXPECT_EQ(file.Open(row.path), row.code) << std::filesystem::path(row.path).string();
        EXPECT_FALSE(file.IsOpen());
    }
}

TEST_F(HeldFileTest, Open_RefusesAReadOnlyFile)
{
    ASSERT_TRUE(SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_READONLY));
    HeldFile file;
    EXPECT_EQ(file.Open(Path()), result::AccessDenied);
    SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(file.Open(Path()), result::Success);
}

TEST_F(HeldFileTest, Open_ReportsAtOnceThatSomebodyKeepsReadersOrWritersOut)
{
    for (const DWORD share : {0UL, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_WRITE}}) {
        const Handle holder = Hold(GENERIC_READ, share);
        ASSERT_TRUE(holder != nullptr);
        HeldFile file;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(file.Open(Path()), result::SharingViolation) << share;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    }
}

TEST_F(HeldFileTest, Open_ClosesWhatWasHeldBefore)
{
    HeldFile file = Edit();
    EXPECT_EQ(file.Open(Path(u"none")), result::FileNotFound);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(LockAnother(), result::Success);
}

TEST_F(HeldFileTest, TryLock_KeepsASecondEditorOutUntilTheFirstCloses)
{
    HeldFile first = Edit();
    EXPECT_EQ(LockAnother(), result::FileLocked);
    EXPECT_EQ(first.TryLock(), result::Success) << "again, by the one who has it";
    HeldFile moved = std::move(first);
    EXPECT_EQ(LockAnother(), result::FileLocked);
    moved.Close();
    EXPECT_EQ(LockAnother(), result::Success);
    {
        const HeldFile another = Edit();
        EXPECT_EQ(LockAnother(), result::FileLocked);
    }
    EXPECT_EQ(LockAnother(), result::Success);
}

TEST_F(HeldFileTest, TryLock_OfOneFileLeavesTheOthersFree)
{
    m_folder.Write(u"other", "");
    const HeldFile file = Edit();
    HeldFile other;
    EXPECT_EQ(other.Open(Path(u"other")), result::Success);
    EXPECT_EQ(other.TryLock(), result::Success);
}

/// A second process that locks a file.
class HolderProcess {
public:
    explicit HolderProcess(const std::wstring& path)
    {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        std::wstring line = L"\"" + BesideProgram(L"windows_file_holder.exe") + L"\" \"" + path + L"\"";
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &m_process) ==
            0) {
            throw std::runtime_error("cannot start the holder");
        }
    }
    ~HolderProcess()
    {
        End();
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }
    HolderProcess(const HolderProcess&) = delete;
    HolderProcess& operator=(const HolderProcess&) = delete;

    void End() const
    {
        TerminateProcess(m_process.hProcess, 1);
        WaitForSingleObject(m_process.hProcess, INFINITE);
    }

private:
    PROCESS_INFORMATION m_process{};
};

/// Whether something becomes true within ten seconds.
template <class Condition>
bool Eventually(const Condition& condition)
{
    for (int i = 0; i < 1000; ++i) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST_F(HeldFileTest, TryLock_KeepsOtherProcessesOutAndEndsWithTheProcess)
{
    const HolderProcess holder(Wide());
    ASSERT_TRUE(Eventually([&] { return m_folder.Has(u"file.held"); }));
    EXPECT_EQ(LockAnother(), result::FileLocked);
    holder.End();
    EXPECT_TRUE(Eventually([&] { return LockAnother() == result::Success; }));
}

TEST_F(HeldFileTest, Reader_IsNotDisturbedWhileTheFileIsLocked)
{
    const HeldFile file = Edit();
    EXPECT_EQ(m_folder.Read(u"file"), "old");
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(Path(), bytes), result::Success);
    EXPECT_EQ(bytes, "old");
    // Not even one who wants no writer beside him.
    const Handle reader = Hold(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE);
    ASSERT_TRUE(reader != nullptr);
    char text[8]{};
    DWORD count = 0;
    EXPECT_TRUE(ReadFile(reader.get(), text, sizeof(text), &count, nullptr));
    EXPECT_EQ(std::string_view(text, count), "old");
    // The lock covers no byte that a reader can meet.
    OVERLAPPED start{};
    EXPECT_TRUE(LockFileEx(reader.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 0,
                           static_cast<DWORD>(kLargestFile), &start));
}

}  // namespace
}  // namespace zupm::test
