// What happens to a held file, its name and its folder meanwhile, on Windows.
#include <chrono>
#include <thread>

#include "HeldFileTest.h"
#include "platform/Files.h"

namespace zupm::test {
namespace {

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

}  // namespace
}  // namespace zupm::test
