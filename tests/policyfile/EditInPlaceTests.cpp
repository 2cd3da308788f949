// IPolicyFileEdit: a file is opened once, locked, loaded, compared and replaced.
#include <chrono>
#include <thread>

#include "PolicyFileTest.h"
#include "tests/support/ErrorInfo.h"

namespace zupm::test {

namespace {

using namespace std::literals;
namespace fs = std::filesystem;

constexpr char kText[] =
    "<R>\r\n  <!-- kept -->\r\n<PolicyRoot version='12'><PolicyGroup><Policy><Product SoftwareID='A'/></Policy>"
    "</PolicyGroup></PolicyRoot>\r\n<TaskRoot version='7'/></R>";

/// A policy file object through both of its interfaces.
struct Editor {
    PolicyFileClient file;
    ComPtr<IPolicyFileEdit> edit = ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileEdit>();

    HRESULT Open(const std::u16string& path, LONG timeout = 0) { return edit->OpenForEdit(Bstr(path).Get(), timeout); }
    HRESULT Commit(LONG force = 0) { return edit->CommitEdit(force); }
    void AddPolicy(std::u16string_view id) { ASSERT_EQ(file.Add(file.NewPolicy(id)), 0); }
    [[nodiscard]] LONG Changed() const
    {
        LONG changed = -1;
        EXPECT_EQ(edit->HasFileChanged(&changed), 0);
        return changed;
    }
};

class EditInPlace : public testing::Test {
protected:
    [[nodiscard]] std::string Bytes() const { return m_folder.Read(u"policy.xml"); }
    [[nodiscard]] fs::path File() const { return m_folder.Folder() / "policy.xml"; }
    void PutAnother(std::string_view text) const
    {
        (void)m_away.Write(u"other.xml", text);
        TakeAway();
        fs::rename(m_away.Folder() / "other.xml", File());
    }
    /// Not every system renames over an open file, or frees its name when it is deleted.
    void TakeAway() const { fs::rename(File(), m_away.Folder() / "old.xml"); }

    TempFolder m_folder;
    TempFolder m_away;
    std::u16string m_path = m_folder.Write(u"policy.xml", kText);
    Editor m_editor;
};

}  // namespace

TEST_F(EditInPlace, IsASecondInterfaceOfTheSameObject)
{
    EXPECT_EQ(m_editor.edit.Query<IUnknown>().Get(),
              ComPtr<IPolicyFile>(m_editor.file.Object()).Query<IUnknown>().Get());
    EXPECT_TRUE(m_editor.edit.Query<IPolicyFile>());
    EXPECT_EQ(m_editor.edit.Query<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID_IPolicyFileEdit), S_OK);
}

TEST_F(EditInPlace, WithoutAnOpenEdit_IsNotInitialised)
{
    LONG changed = 7;
    EXPECT_EQ(m_editor.edit->HasFileChanged(&changed), result::NotInitialised);
    EXPECT_EQ(changed, 7);
    EXPECT_EQ(m_editor.edit->HasFileChanged(nullptr), result::BadArgument);
    EXPECT_EQ(m_editor.edit->RehearseCommit(0), result::NotInitialised);
    EXPECT_EQ(m_editor.Commit(), result::NotInitialised);
    EXPECT_EQ(m_editor.edit->EndEdit(), 0);
    ASSERT_EQ(m_editor.file.Load(m_path), 0);
    EXPECT_EQ(m_editor.Commit(1), result::NotInitialised) << "a plain load holds no file";
}

TEST_F(EditInPlace, Commit_WritesWhatWriteFileWrites)
{
    FixedClock clock;
    PolicyFileClient plain;
    ASSERT_EQ(plain.Load(m_path), 0);
    ASSERT_EQ(plain.Add(plain.NewPolicy(u"B")), 0);
    ASSERT_EQ(plain.Write(m_folder.Path(u"plain.xml")), 0);

    ASSERT_EQ(m_editor.Open(m_path), 0);
    m_editor.AddPolicy(u"B");
    EXPECT_EQ(m_editor.edit->RehearseCommit(0), 0);
    EXPECT_EQ(Bytes(), kText) << "a rehearsal writes nothing";
    EXPECT_EQ(m_folder.Names(), (std::vector{"plain.xml"s, "policy.xml"s}));
    ASSERT_EQ(m_editor.Commit(), 0);
    EXPECT_EQ(Bytes(), m_folder.Read(u"plain.xml"));
    EXPECT_EQ(m_folder.Names(), (std::vector{"plain.xml"s, "policy.xml"s})) << "no other file stays";
}

TEST_F(EditInPlace, FileInAnotherEncoding_StaysInIt)
{
    const std::string utf16 = "\xFF\xFE<\0R\0/\0>\0"s;
    (void)m_folder.Write(u"policy.xml", utf16);
    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_EQ(m_editor.Changed(), 0);
    ASSERT_EQ(m_editor.Commit(), 0);
    EXPECT_EQ(Bytes(), utf16);
}

TEST_F(EditInPlace, Open_MakesTheObjectWritableAndDropsWhatWasLoaded)
{
    ASSERT_EQ(m_editor.file.Load(m_folder.Write(u"first.xml", "<R/>"), 1), 0);
    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_EQ(m_editor.file.FindPolicy(u"A"), 0);
    EXPECT_EQ(m_editor.file.RemovePolicy(u"A"), 0);
}

TEST_F(EditInPlace, SecondEditor_WaitsForItsTurn)
{
    ASSERT_EQ(m_editor.Open(m_path), 0);
    Editor second;
    EXPECT_EQ(second.Open(m_path), result::FileLocked);
    EXPECT_EQ(second.Open(m_path, -5), result::FileLocked);
    EXPECT_EQ(second.Open(m_path, 30), result::FileLocked);
    EXPECT_EQ(second.file.FindPolicy(u"A"), result::NotInitialised) << "nothing is loaded";
    EXPECT_EQ(second.Commit(), result::NotInitialised) << "nothing is held";
    EXPECT_EQ(m_editor.Changed(), 0);

    m_editor.AddPolicy(u"B");
    std::thread first([&] {
        std::this_thread::sleep_for(100ms);
        EXPECT_EQ(m_editor.Commit(), 0);
    });
    EXPECT_EQ(second.Open(m_path, 60'000), 0);
    first.join();
    EXPECT_EQ(second.file.FindPolicy(u"B"), 0) << "it reads the new file, not the one that it waited for";
    second.AddPolicy(u"C");
    EXPECT_EQ(second.Commit(), 0);
}

TEST_F(EditInPlace, LockEnds_WithWhateverEndsTheEdit)
{
    Editor second;
    const auto isFree = [&] {
        const bool isOpen = second.Open(m_path) == 0;
        EXPECT_EQ(second.edit->EndEdit(), 0);
        return isOpen;
    };
    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_FALSE(isFree());
    EXPECT_EQ(m_editor.edit->EndEdit(), 0);
    EXPECT_EQ(m_editor.file.FindPolicy(u"A"), 0) << "the document stays";
    EXPECT_TRUE(isFree());

    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_EQ(m_editor.Commit(), 0);
    EXPECT_TRUE(isFree());
    EXPECT_EQ(m_editor.Commit(), result::NotInitialised);

    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_EQ(m_editor.file.Load(m_path, 1), 0);
    EXPECT_TRUE(isFree());

    ASSERT_EQ(m_editor.Open(m_path), 0);
    EXPECT_EQ(m_editor.Open(m_folder.Write(u"other.xml", "<R/>")), 0);
    EXPECT_TRUE(isFree());

    ASSERT_EQ(m_editor.Open(m_path), 0);
    m_editor = Editor();
    EXPECT_TRUE(isFree());
}

TEST_F(EditInPlace, Readers_AreNotDisturbed)
{
    ASSERT_EQ(m_editor.Open(m_path), 0);
    PolicyFileClient reader;
    EXPECT_EQ(reader.Load(m_path, 1), 0);
    EXPECT_EQ(Bytes(), kText);
    EXPECT_EQ(m_editor.Commit(), 0);
}

TEST_F(EditInPlace, FileThatSomethingElseChanged_IsLeftAloneUnlessForced)
{
    const struct {
        const char* label;
        std::function<void()> change;
    } rows[] = {
        {"longer", [&] { (void)m_folder.Write(u"policy.xml", kText + "\n"s); }},
        {"shorter", [&] { (void)m_folder.Write(u"policy.xml", "<R/>"); }},
        {"empty", [&] { (void)m_folder.Write(u"policy.xml", ""); }},
        {"one byte", [&] { (void)m_folder.Write(u"policy.xml", std::string(kText).replace(12, 1, "K")); }},
        {"another file", [&] { PutAnother("<Other/>"); }},
        {"another file with the same bytes", [&] { PutAnother(kText); }},
    };
    for (const auto& row : rows) {
        (void)m_folder.Write(u"policy.xml", kText);
        ASSERT_EQ(m_editor.Open(m_path), 0) << row.label;
        EXPECT_EQ(m_editor.Changed(), 0) << row.label;
        row.change();
        const std::string changed = Bytes();
        EXPECT_EQ(m_editor.Changed(), 1) << row.label;
        EXPECT_EQ(m_editor.edit->RehearseCommit(0), result::FileChanged) << row.label;
        EXPECT_EQ(m_editor.edit->RehearseCommit(1), 0) << row.label;
        EXPECT_EQ(m_editor.Commit(), result::FileChanged) << row.label;
        EXPECT_EQ(Bytes(), changed) << row.label;
        EXPECT_EQ(m_folder.Names(), std::vector{"policy.xml"s}) << row.label;
        EXPECT_EQ(m_editor.Commit(1), 0) << row.label;
        EXPECT_NE(Bytes().find("kept"), std::string::npos) << row.label;
    }
}

TEST_F(EditInPlace, FileThatIsGone_IsWrittenOnlyWhenForced)
{
    ASSERT_EQ(m_editor.Open(m_path), 0);
    TakeAway();
    EXPECT_EQ(m_editor.Changed(), 1);
    EXPECT_EQ(m_editor.Commit(), result::FileChanged);
    EXPECT_FALSE(m_folder.Has(u"policy.xml"));
    EXPECT_EQ(m_editor.Commit(1), 0);
    EXPECT_NE(Bytes().find("kept"), std::string::npos);
}

TEST_F(EditInPlace, SameBytesWrittenAgain_AreNoChange)
{
    ASSERT_EQ(m_editor.Open(m_path), 0);
    (void)m_folder.Write(u"policy.xml", kText);
    EXPECT_EQ(m_editor.Commit(), 0);
}

TEST_F(EditInPlace, FileThatCannotBeOpenedOrLoaded_LeavesNothingLoadedAndNothingHeld)
{
    fs::create_directory(m_folder.Folder() / "folder");
    const struct {
        std::u16string path;
        HRESULT code;
    } rows[] = {
        {m_folder.Path(u"missing.xml"), result::FileNotFound},
        {m_folder.Path(u"missing/policy.xml"), result::PathNotFound},
        {m_folder.Path(u"folder"), result::AccessDenied},
        {u"", result::InvalidName},
        {m_folder.Write(u"broken.xml", "<R>"), result::SyntaxError},
        {m_folder.Write(u"empty.xml", ""), result::SyntaxError},
        {m_folder.Write(u"bytes.xml", "<R>\xFF</R>"), result::NotValidInItsEncoding},
    };
    Editor second;
    for (const auto& row : rows) {
        ASSERT_EQ(m_editor.file.Load(m_path), 0);
        EXPECT_EQ(m_editor.Open(row.path), row.code) << fs::path(row.path);
        EXPECT_EQ(m_editor.file.FindPolicy(u"A"), result::NotInitialised) << fs::path(row.path);
        EXPECT_EQ(m_editor.file.Write(m_path), result::NotInitialised) << fs::path(row.path);
        EXPECT_EQ(m_editor.Commit(1), result::NotInitialised) << fs::path(row.path);
        EXPECT_EQ(second.Open(row.path), row.code) << "no lock stays: " << fs::path(row.path);
    }
    EXPECT_EQ(Bytes(), kText);
}

TEST_F(EditInPlace, SyntaxError_NamesTheFileAndThePlace)
{
    const std::u16string path = m_folder.Write(u"broken.xml", "<R>\n <a></b></R>");
    ASSERT_EQ(m_editor.Open(path), result::SyntaxError);
    const ErrorInformation information = TakeErrorInformation();
    EXPECT_TRUE(information.description.starts_with(path + u":2:")) << fs::path(information.description);
    EXPECT_TRUE(information.interfaceId == IID_IPolicyFileEdit);
}

TEST_F(EditInPlace, EightThreadsWithFifteenEditsEach_LoseNothing)
{
    constexpr int kThreads = 8;
    constexpr int kEdits = 15;
    const auto edit = [&](int thread) {
        Editor editor;
        for (int i = 0; i < kEdits; ++i) {
            ASSERT_EQ(editor.Open(m_path, 600'000), 0);
            const std::string id = std::to_string(thread) + "-" + std::to_string(i);
            editor.AddPolicy(std::u16string(id.begin(), id.end()));
            ASSERT_EQ(editor.Commit(), 0);
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back(edit, thread);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(m_editor.Open(m_path), 0);
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int i = 0; i < kEdits; ++i) {
            const std::string id = std::to_string(thread) + "-" + std::to_string(i);
            EXPECT_EQ(m_editor.file.FindPolicy(std::u16string(id.begin(), id.end())), 0) << id;
        }
    }
}

}  // namespace zupm::test
