// Replacing a held file while others hold it, and when the system fails, on Windows.
#include <chrono>
#include <thread>

#include "HeldFileTest.h"
#include "platform/win32/Replacement.h"
#include "tests/support/FailingAllocations.h"

namespace zupm::test {
namespace {

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
