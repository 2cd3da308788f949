// Editing a file through what was opened once, on Windows.
#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/Files.h"
#include "platform/HeldFile.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Replacement.h"
#include "tests/support/FailingAllocations.h"
#include "tests/support/TempFolder.h"
#include "tests/windows/Registration.h"

namespace zupm::test {
namespace {

using win32::Handle;
using win32::kShareAll;
using win32::OwnFile;

class HeldFileTest : public testing::Test {
protected:
    HeldFileTest() { m_folder.Write(u"file", m_old); }

    [[nodiscard]] std::u16string Path(std::u16string_view name = u"file") const { return m_folder.Path(name); }

    [[nodiscard]] std::wstring Wide(std::u16string_view name = u"file") const
    {
        return std::filesystem::path(Path(name)).wstring();
    }

    [[nodiscard]] Handle Hold(DWORD access, DWORD share, std::u16string_view name = u"file") const
    {
        return OwnFile(CreateFileW(Wide(name).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    /// The file, open, locked and read.
    [[nodiscard]] HeldFile Edit() const
    {
        HeldFile file;
        std::string bytes;
        EXPECT_EQ(file.Open(Path()), result::Success);
        EXPECT_EQ(file.TryLock(), result::Success);
        EXPECT_EQ(file.Read(bytes), result::Success);
        EXPECT_EQ(bytes, m_old);
        return file;
    }

    /// What a second editor is answered.
    [[nodiscard]] result::Code LockAnother() const
    {
        HeldFile file;
        const result::Code code = file.Open(Path());
        return code < 0 ? code : file.TryLock();
    }

    void ExpectAlone(std::string_view bytes) const
    {
        EXPECT_EQ(m_folder.Read(u"file"), bytes);
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    }

    const std::string m_old = "old";
    TempFolder m_folder;
};

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

TEST_F(HeldFileTest, ChangedFile_IsNoticedAndLeftAlone)
{
    struct Row {
        const char* what;
        const char* bytes;
    };
    for (const Row& row :
         {Row{"other bytes", "Old"}, {"another end", "olD"}, {"longer", "old "}, {"shorter", "ol"}, {"empty", ""}}) {
        m_folder.Write(u"file", m_old);
        HeldFile file = Edit();
        m_folder.Write(u"file", row.bytes);
        EXPECT_EQ(file.CheckUnchanged(m_old), result::FileChanged) << row.what;
        EXPECT_EQ(file.Replace("new", &m_old), result::FileChanged) << row.what;
        ExpectAlone(row.bytes);
        EXPECT_EQ(file.Replace("new", nullptr), result::Success) << row.what;
        ExpectAlone("new");
    }
}

TEST_F(HeldFileTest, LargeFileChangedInItsLastByte_IsNoticed)
{
    std::string text(200000, 'x');
    m_folder.Write(u"file", text);
    HeldFile file;
    ASSERT_EQ(file.Open(Path()), result::Success);
    std::string changed = text;
    changed.back() = 'y';
    m_folder.Write(u"file", changed);
    EXPECT_EQ(file.CheckUnchanged(text), result::FileChanged);
    EXPECT_EQ(file.CheckUnchanged(changed), result::Success);
}

TEST_F(HeldFileTest, FileWithTheSameBytesUnderTheName_IsAnotherFile)
{
    HeldFile file = Edit();
    ASSERT_EQ(ReplaceFileAtomically(Path(), m_old), result::Success);
    EXPECT_EQ(file.CheckUnchanged(m_old), result::FileChanged);
    EXPECT_EQ(file.TryLock(), result::FileChanged);
    EXPECT_EQ(file.Replace("new", &m_old), result::FileChanged);
    EXPECT_EQ(m_folder.Read(u"file"), "old");
    std::string bytes;
    EXPECT_EQ(file.Read(bytes), result::Success) << "the file that was opened is still there";
    EXPECT_EQ(bytes, "old");
    EXPECT_EQ(file.Replace("new", nullptr), result::Success);
    // A deleted file may keep a name until nobody has it open.
    file.Close();
    ExpectAlone("new");
}

TEST_F(HeldFileTest, FileWhoseNameIsGone_IsNoticedAndCanBeWrittenAllTheSame)
{
    HeldFile file = Edit();
    ASSERT_TRUE(MoveFileExW(Wide().c_str(), Wide(u"away").c_str(), 0));
    EXPECT_EQ(file.CheckUnchanged(m_old), result::FileChanged);
    EXPECT_EQ(file.TryLock(), result::FileChanged);
    EXPECT_EQ(file.Replace("new", &m_old), result::FileChanged);
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"away"});
    EXPECT_EQ(file.Replace("new", nullptr), result::Success);
    EXPECT_EQ(m_folder.Read(u"file"), "new");
    EXPECT_EQ(m_folder.Read(u"away"), "old");
}

TEST_F(HeldFileTest, AnotherFileThatAReaderHoldsForAMoment_IsReplacedWhenNothingIsExpected)
{
    HeldFile file = Edit();
    ASSERT_TRUE(MoveFileExW(Wide().c_str(), Wide(u"away").c_str(), 0));
    m_folder.Write(u"file", "their");
    Handle reader = Hold(GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(reader != nullptr);
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        reader.reset();
    });
    EXPECT_EQ(file.Replace("new", nullptr), result::Success);
    release.join();
    EXPECT_EQ(m_folder.Read(u"file"), "new");
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"away", "file"}));
}

TEST_F(HeldFileTest, FolderUnderTheName_IsNoticedAndNotReplaced)
{
    HeldFile file = Edit();
    ASSERT_TRUE(MoveFileExW(Wide().c_str(), Wide(u"away").c_str(), 0));
    ASSERT_TRUE(CreateDirectoryW(Wide().c_str(), nullptr));
    EXPECT_EQ(file.CheckUnchanged(m_old), result::FileChanged);
    EXPECT_LT(file.Replace("new", nullptr), 0);
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"away", "file"}));
}

TEST_F(HeldFileTest, Folder_KeepsItsNameWhileTheFileIsHeld)
{
    ASSERT_TRUE(CreateDirectoryW(Wide(u"folder").c_str(), nullptr));
    m_folder.Write(u"folder\\file", "old");
    HeldFile file;
    ASSERT_EQ(file.Open(Path(u"folder\\file")), result::Success);
    EXPECT_FALSE(MoveFileExW(Wide(u"folder").c_str(), Wide(u"moved").c_str(), 0));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    file.Close();
    EXPECT_TRUE(MoveFileExW(Wide(u"folder").c_str(), Wide(u"moved").c_str(), 0));
}

TEST_F(HeldFileTest, RelativePath_IsLookedUpOnce)
{
    m_folder.Write(u"folder-mark", "");
    ASSERT_TRUE(CreateDirectoryW(Wide(u"other").c_str(), nullptr));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Folder());
    HeldFile file;
    EXPECT_EQ(file.Open(u"file"), result::Success);
    std::filesystem::current_path(m_folder.Folder() / "other");
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    std::filesystem::current_path(before);
    EXPECT_EQ(m_folder.Read(u"file"), "new");
    EXPECT_FALSE(m_folder.Has(u"other\\file"));
}

TEST_F(HeldFileTest, FileMadeReadOnlyMeanwhile_IsLeftAlone)
{
    HeldFile file = Edit();
    ASSERT_TRUE(SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(file.RehearseReplace(), result::AccessDenied);
    EXPECT_EQ(file.Replace("new", &m_old), result::AccessDenied);
    EXPECT_EQ(file.Replace("new", nullptr), result::AccessDenied);
    ExpectAlone("old");
    SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(file.RehearseReplace(), result::Success);
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    ExpectAlone("new");
}

TEST_F(HeldFileTest, HiddenFile_StaysHidden)
{
    ASSERT_TRUE(SetFileAttributesW(Wide().c_str(), FILE_ATTRIBUTE_HIDDEN));
    HeldFile file = Edit();
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    EXPECT_NE(GetFileAttributesW(Wide().c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(HeldFileTest, ReplacementThatAReaderKeepsFromHappening_LeavesTheEditOpen)
{
    HeldFile file = Edit();
    Handle reader = Hold(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(reader != nullptr);
    EXPECT_LT(file.Replace("new", &m_old), 0);
    ExpectAlone("old");
    EXPECT_EQ(LockAnother(), result::FileLocked) << "the lock was taken again";
    EXPECT_EQ(file.CheckUnchanged(m_old), result::Success);
    reader.reset();
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    ExpectAlone("new");
}

TEST_F(HeldFileTest, ChangeDuringAReplacementThatAReaderHoldsUp_IsNoticed)
{
    HeldFile file = Edit();
    Handle reader = Hold(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(reader != nullptr);
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        m_folder.Write(u"file", "their");
        reader.reset();
    });
    EXPECT_EQ(file.Replace("new", &m_old), result::FileChanged);
    writer.join();
    ExpectAlone("their");
}

TEST_F(HeldFileTest, FolderThatCannotBeFlushed_IsReportedWithTheNewFileInPlace)
{
    HeldFile file = Edit();
    // Nobody else may open the folder for writing, which flushing needs.
    const Handle holder = OwnFile(CreateFileW(m_folder.Folder().c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ, nullptr,
                                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    ASSERT_TRUE(holder != nullptr);
    EXPECT_EQ(file.RehearseReplace(), result::Success);
    EXPECT_EQ(file.Replace("new", &m_old), result::WrittenNotFlushed);
    ExpectAlone("new");
}

TEST_F(HeldFileTest, FolderThatSomebodyHoldsForAMoment_IsFlushedAfterwards)
{
    HeldFile file = Edit();
    Handle holder = OwnFile(CreateFileW(m_folder.Folder().c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    ASSERT_TRUE(holder != nullptr);
    std::thread owner([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        holder.reset();
    });
    EXPECT_EQ(file.Replace("new", &m_old), result::Success);
    owner.join();
    ExpectAlone("new");
}

/// A holder whose file another editor takes the moment it is let go.
class RobbedHolder final : public win32::TargetHolder {
public:
    explicit RobbedHolder(std::u16string path) : m_path(std::move(path)) { EXPECT_EQ(m_mine.Open(m_path), 0); }

    result::Code PrepareMove() override { return m_mine.IsOpen() ? result::Success : result::FileLocked; }
    void LetGo() noexcept override
    {
        m_mine.Close();
        EXPECT_EQ(m_robber.Open(m_path), result::Success);
        EXPECT_EQ(m_robber.TryLock(), result::Success);
    }

private:
    std::u16string m_path;
    HeldFile m_mine;
    HeldFile m_robber;
};

TEST_F(HeldFileTest, EditorWhoIsFasterWhileTheFileIsLetGo_EndsTheReplacement)
{
    RobbedHolder holder(Path());
    win32::Target target{Path(), true, true, FILE_ATTRIBUTE_NORMAL, {}};
    OnePiece bytes("new");
    const result::Code code = win32::ReplaceHeld(target, bytes, holder);
    if (code == result::Success) {
        GTEST_SKIP() << "open files are renamed over here: nothing was let go";
    }
    EXPECT_EQ(code, result::FileLocked);
    ExpectAlone("old");
}

TEST_F(HeldFileTest, MemoryThatRunsOut_IsReportedAndLosesNothing)
{
    const std::u16string path = Path();
    bool isFailed = true;
    for (int number = 1; isFailed; ++number) {
        ASSERT_LT(number, 200);
        m_folder.Write(u"file", m_old);
        HeldFile file;
        std::string bytes;
        result::Code code = result::Success;
        {
            const FailingAllocation failing(number);
            code = file.Open(path);
            code = code < 0 ? code : file.TryLock();
            code = code < 0 ? code : file.Read(bytes);
            code = code < 0 ? code : file.RehearseReplace();
            code = code < 0 ? code : file.Replace("new", &m_old);
            isFailed = failing.Happened();
        }
        EXPECT_EQ(code, isFailed ? result::OutOfMemory : result::Success) << number;
        ExpectAlone(code < 0 ? "old" : "new");
    }
}

}  // namespace
}  // namespace zupm::test
