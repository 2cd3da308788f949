// The file that was loaded, on the disk: HasChangedOnDisk and WriteIfUnchanged of IPolicyFileContents.
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "PolicyFileTest.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

using namespace std::literals;
namespace fs = std::filesystem;

constexpr char kText[] =
    "<R>\r\n  <!-- kept -->\r\n<PolicyRoot version='12'><PolicyGroup><Policy><Product SoftwareID='A'/></Policy>"
    "</PolicyGroup></PolicyRoot>\r\n<TaskRoot version='7'/></R>";

ComPtr<IPolicyFileContents> ContentsOf(const PolicyFileClient& file)
{
    return ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileContents>();
}

ComPtr<IPolicyFileEdit> EditOf(const PolicyFileClient& file)
{
    return ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileEdit>();
}

HRESULT WriteIfUnchanged(const PolicyFileClient& file, LONG timeout = 0)
{
    return ContentsOf(file)->WriteIfUnchanged(timeout);
}

/// 1 or 0; -1 when the call failed and left the slot alone.
LONG HasChanged(const PolicyFileClient& file)
{
    LONG changed = -1;
    const HRESULT code = ContentsOf(file)->get_HasChangedOnDisk(&changed);
    EXPECT_EQ(code, changed == -1 ? result::NotInitialised : 0);
    return changed;
}

class OnDisk : public PolicyFileTest {
protected:
    void SetUp() override { ASSERT_EQ(LoadText(kText), 0); }

    [[nodiscard]] std::string Bytes() const { return m_folder.Read(u"policy.xml"); }
    void Put(std::string_view text) const { (void)m_folder.Write(u"policy.xml", text); }
    void AddPolicy(std::u16string_view id) { ASSERT_EQ(m_file.Add(m_file.NewPolicy(id)), 0); }
    [[nodiscard]] bool FileHasPolicy(std::u16string_view id) const
    {
        PolicyFileClient reader;
        EXPECT_EQ(reader.Load(m_path, 1), 0);
        return reader.FindPolicy(std::u16string(id).c_str()) == 0;
    }

    std::u16string m_path = m_folder.Path(u"policy.xml");
    fs::path m_place = m_folder.Folder() / "policy.xml";
};

}  // namespace

TEST_F(OnDisk, WithoutALoad_IsNotInitialised)
{
    const PolicyFileClient fresh;
    EXPECT_EQ(HasChanged(fresh), -1);
    EXPECT_EQ(ContentsOf(fresh)->get_HasChangedOnDisk(nullptr), result::BadArgument);
    EXPECT_EQ(WriteIfUnchanged(fresh), result::NotInitialised);
    ASSERT_EQ(LoadText("<R>"), result::SyntaxError);
    EXPECT_EQ(HasChanged(m_file), -1);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::NotInitialised);
    EXPECT_EQ(Bytes(), "<R>");
}

TEST_F(OnDisk, HasChanged_SeesOtherBytesAndNoFile)
{
    const struct {
        const char* label;
        std::function<void()> change;
        LONG expected;
    } rows[] = {
        {"nothing", [] {}, 0},
        {"longer", [&] { Put(kText + "\n"s); }, 1},
        {"the same bytes again", [&] { Put(kText); }, 0},
        {"shorter", [&] { Put("<R/>"); }, 1},
        {"empty", [&] { Put(""); }, 1},
        {"one byte", [&] { Put(std::string(kText).replace(12, 1, "K")); }, 1},
        {"a signature", [&] { Put("\xEF\xBB\xBF"s + kText); }, 1},
        {"gone", [&] { fs::remove(m_place); }, 1},
        {"another file with the same bytes", [&] { Put(kText); }, 0},
    };
    for (const auto& row : rows) {
        row.change();
        EXPECT_EQ(HasChanged(m_file), row.expected) << row.label;
    }
}

TEST_F(OnDisk, HasChanged_IsNotAboutEditsOfTheObject)
{
    AddPolicy(u"B");
    EXPECT_EQ(HasChanged(m_file), 0);
    ASSERT_EQ(m_file.Write(m_folder.Path(u"other.xml")), 0);
    EXPECT_EQ(HasChanged(m_file), 0);
    ASSERT_EQ(m_file.Write(m_path), 0);
    EXPECT_EQ(HasChanged(m_file), 1) << "WriteFile knows nothing of the loaded file";
}

TEST_F(OnDisk, HasChanged_OfAFolderInTheFilesPlace_IsAFileCode)
{
    fs::remove(m_place);
    fs::create_directory(m_place);
    LONG changed = 7;
    EXPECT_EQ(ContentsOf(m_file)->get_HasChangedOnDisk(&changed), result::AccessDenied);
    EXPECT_EQ(changed, 7);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::AccessDenied);
}

TEST_F(OnDisk, Write_WritesWhatWriteFileWrites)
{
    FixedClock clock;
    PolicyFileClient plain;
    ASSERT_EQ(plain.Load(m_path), 0);
    ASSERT_EQ(plain.Add(plain.NewPolicy(u"B")), 0);
    ASSERT_EQ(plain.Write(m_folder.Path(u"plain.xml")), 0);
    AddPolicy(u"B");
    ASSERT_EQ(WriteIfUnchanged(m_file), 0);
    EXPECT_EQ(Bytes(), m_folder.Read(u"plain.xml"));
    EXPECT_EQ(m_folder.Names(), (std::vector{"plain.xml"s, "policy.xml"s})) << "no other file stays";
}

TEST_F(OnDisk, Write_CanBeRepeated)
{
    for (const char16_t* id : {u"B", u"C", u"D"}) {
        AddPolicy(id);
        EXPECT_EQ(HasChanged(m_file), 0);
        ASSERT_EQ(WriteIfUnchanged(m_file), 0);
        EXPECT_EQ(HasChanged(m_file), 0);
        EXPECT_TRUE(FileHasPolicy(id));
    }
    const std::string written = Bytes();
    for (const auto& other : {written + " ", written.substr(1), std::string(written).replace(20, 1, "#"), ""s}) {
        Put(other);
        EXPECT_EQ(HasChanged(m_file), 1);
        EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
        EXPECT_EQ(Bytes(), other);
    }
    Put(written);
    EXPECT_EQ(WriteIfUnchanged(m_file), 0);
}

TEST_F(OnDisk, Write_InEveryEncodingCanBeRepeated)
{
    const std::string utf16 = "\xFF\xFE<\0R\0>\0<\0P\0/\0>\0<\0/\0R\0>\0"s;
    const std::string latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?><R><!-- \xE4 --><T/></R>";
    for (const std::string& text : {utf16, latin1, "\xEF\xBB\xBF<R/>"s}) {
        ASSERT_EQ(LoadText(text), 0);
        ASSERT_EQ(WriteIfUnchanged(m_file), 0);
        EXPECT_EQ(Bytes(), text);
        EXPECT_EQ(HasChanged(m_file), 0);
        ASSERT_EQ(WriteIfUnchanged(m_file), 0);
        Put(text + text.back());
        EXPECT_EQ(HasChanged(m_file), 1);
    }
}

TEST_F(OnDisk, Write_AfterAChangeWritesNothingAndLeavesTheDocument)
{
    AddPolicy(u"B");
    const std::optional<std::u16string> document = m_file.Buffer();
    Put("<Other/>");
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
    EXPECT_EQ(Bytes(), "<Other/>");
    EXPECT_EQ(m_folder.Names(), std::vector{"policy.xml"s});
    EXPECT_EQ(m_file.Buffer(), document);
    fs::remove(m_place);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
    EXPECT_FALSE(m_folder.Has(u"policy.xml"));
    Put(kText);
    EXPECT_EQ(WriteIfUnchanged(m_file), 0) << "it is the file that was loaded again";
    EXPECT_TRUE(FileHasPolicy(u"B"));
}

TEST_F(OnDisk, Write_WhenTheFolderIsGone_IsAChange)
{
    fs::create_directory(m_folder.Folder() / "sub");
    ASSERT_EQ(m_file.Load(m_folder.Write(u"sub/policy.xml", kText)), 0);
    fs::remove_all(m_folder.Folder() / "sub");
    EXPECT_EQ(HasChanged(m_file), 1);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
}

TEST_F(OnDisk, Write_OfAFileLoadedForReading_IsRefused)
{
    ASSERT_EQ(m_file.Load(m_path, 1), 0);
    EXPECT_EQ(HasChanged(m_file), 0);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::ReadOnly);
    EXPECT_EQ(Bytes(), kText);
}

TEST_F(OnDisk, Write_WaitsForAnEditor)
{
    AddPolicy(u"B");
    PolicyFileClient editor;
    ASSERT_EQ(EditOf(editor)->OpenForEdit(Bstr(m_path).Get(), 0), 0);
    for (const LONG timeout : {0, -5, 30}) {
        EXPECT_EQ(WriteIfUnchanged(m_file, timeout), result::FileLocked);
    }
    EXPECT_EQ(HasChanged(m_file), 0) << "an editor that has not written changed nothing";
    std::thread other([&] {
        std::this_thread::sleep_for(100ms);
        EXPECT_EQ(EditOf(editor)->EndEdit(), 0);
    });
    EXPECT_EQ(WriteIfUnchanged(m_file, 60'000), 0);
    other.join();
    EXPECT_TRUE(FileHasPolicy(u"B"));
}

TEST_F(OnDisk, Write_WaitsForAnEditorWhoWritesAndLosesNothing)
{
    AddPolicy(u"B");
    PolicyFileClient editor;
    ASSERT_EQ(EditOf(editor)->OpenForEdit(Bstr(m_path).Get(), 0), 0);
    ASSERT_EQ(editor.Add(editor.NewPolicy(u"C")), 0);
    std::thread other([&] {
        std::this_thread::sleep_for(100ms);
        EXPECT_EQ(EditOf(editor)->CommitEdit(0), 0);
    });
    EXPECT_EQ(WriteIfUnchanged(m_file, 60'000), result::FileChanged);
    other.join();
    EXPECT_TRUE(FileHasPolicy(u"C"));
    EXPECT_FALSE(FileHasPolicy(u"B"));
}

TEST_F(OnDisk, Write_LeavesNoLock)
{
    PolicyFileClient editor;
    const auto isFree = [&] {
        const bool isOpen = EditOf(editor)->OpenForEdit(Bstr(m_path).Get(), 0) == 0;
        EXPECT_EQ(EditOf(editor)->EndEdit(), 0);
        return isOpen;
    };
    EXPECT_EQ(WriteIfUnchanged(m_file), 0);
    EXPECT_TRUE(isFree());
    Put("<Other/>");
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
    EXPECT_TRUE(isFree());
}

TEST_F(OnDisk, Write_WhileAnEditIsOpen_CommitsIt)
{
    ASSERT_EQ(EditOf(m_file)->OpenForEdit(Bstr(m_path).Get(), 0), 0);
    AddPolicy(u"B");
    EXPECT_EQ(HasChanged(m_file), 0);
    Put("<Other/>");
    EXPECT_EQ(HasChanged(m_file), 1);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
    Put(kText);
    EXPECT_EQ(WriteIfUnchanged(m_file), 0);
    EXPECT_EQ(EditOf(m_file)->CommitEdit(0), result::NotInitialised) << "the edit is over";
    EXPECT_TRUE(FileHasPolicy(u"B"));
}

TEST_F(OnDisk, Write_AfterAnEdit_ComparesWithWhatTheEditWrote)
{
    for (const LONG force : {0, 1}) {
        ASSERT_EQ(EditOf(m_file)->OpenForEdit(Bstr(m_path).Get(), 0), 0);
        AddPolicy(force == 0 ? u"B" : u"C");
        if (force != 0) {
            Put("<Other/>");
        }
        ASSERT_EQ(EditOf(m_file)->CommitEdit(force), 0);
        EXPECT_EQ(HasChanged(m_file), 0);
        AddPolicy(u"D");
        EXPECT_EQ(WriteIfUnchanged(m_file), 0);
        EXPECT_TRUE(FileHasPolicy(u"D"));
    }
}

TEST_F(OnDisk, RelativePath_IsTheOneOfTheFolderInWhichItWasLoaded)
{
    const fs::path before = fs::current_path();
    fs::create_directory(m_folder.Folder() / "elsewhere");
    fs::current_path(m_folder.Folder());
    EXPECT_EQ(m_file.Load(u"policy.xml"), 0);
    fs::current_path(m_folder.Folder() / "elsewhere");
    AddPolicy(u"B");
    EXPECT_EQ(HasChanged(m_file), 0);
    EXPECT_EQ(WriteIfUnchanged(m_file), 0);
    fs::current_path(before);
    EXPECT_TRUE(FileHasPolicy(u"B"));
    EXPECT_EQ(m_folder.Names(), (std::vector{"elsewhere"s, "policy.xml"s}));
}

TEST_F(OnDisk, TwoObjects_LoseNoUpdate)
{
    PolicyFileClient other;
    ASSERT_EQ(other.Load(m_path), 0);
    AddPolicy(u"B");
    ASSERT_EQ(other.Add(other.NewPolicy(u"C")), 0);
    EXPECT_EQ(WriteIfUnchanged(m_file), 0);
    EXPECT_EQ(WriteIfUnchanged(other), result::FileChanged);
    ASSERT_EQ(other.Load(m_path), 0);
    ASSERT_EQ(other.Add(other.NewPolicy(u"C")), 0);
    EXPECT_EQ(WriteIfUnchanged(other), 0);
    EXPECT_EQ(WriteIfUnchanged(m_file), result::FileChanged);
    EXPECT_TRUE(FileHasPolicy(u"B"));
    EXPECT_TRUE(FileHasPolicy(u"C"));
}

TEST_F(OnDisk, EightThreadsWithTwentyUpdatesEach_LoseNothing)
{
    constexpr int kThreads = 8;
    constexpr int kUpdates = 20;
    const auto update = [&](int thread) {
        for (int i = 0; i < kUpdates; ++i) {
            const std::string id = std::to_string(thread) + "-" + std::to_string(i);
            HRESULT code = result::FileChanged;
            while (code == result::FileChanged) {
                PolicyFileClient file;
                ASSERT_EQ(file.Load(m_path), 0);
                ASSERT_EQ(file.Add(file.NewPolicy(std::u16string(id.begin(), id.end()))), 0);
                code = WriteIfUnchanged(file, 600'000);
            }
            ASSERT_EQ(code, 0);
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back(update, thread);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_EQ(m_file.Load(m_path), 0);
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int i = 0; i < kUpdates; ++i) {
            const std::string id = std::to_string(thread) + "-" + std::to_string(i);
            EXPECT_EQ(m_file.FindPolicy(std::u16string(id.begin(), id.end()).c_str()), 0) << id;
        }
    }
}

TEST_F(OnDisk, MembersAreCalledByName)
{
    EXPECT_EQ(MemberCall(m_file.Object(), u"HasChangedOnDisk").Get().number, 0);
    AddPolicy(u"B");
    EXPECT_EQ(MemberCall(m_file.Object(), u"WriteIfUnchanged").In(LONG{0}).Call().code, 0);
    Put("<Other/>");
    EXPECT_EQ(MemberCall(m_file.Object(), u"HasChangedOnDisk").Get().number, 1);
    const CallOutcome outcome = MemberCall(m_file.Object(), u"WriteIfUnchanged").In(LONG{0}).Call();
    EXPECT_EQ(outcome.code, result::FileChanged);
    EXPECT_EQ(outcome.description, result::SentenceFor(result::FileChanged));
}

}  // namespace zupm::test
