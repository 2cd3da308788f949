// Failures as the client header reports them.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <type_traits>
#include <typeindex>

#include "ClientTest.h"
#include "tests/support/ComPtr.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/ForeignObjects.h"

namespace zupm::test {
namespace {

using Errors = ClientTest;

/// The class of exceptions that a code gives.
std::type_index ClassOf(result::Code code)
{
    try {
        client::ThrowCode(code, "");
    } catch (const Error& error) {
        EXPECT_EQ(error.Code(), code);
        return typeid(error);
    }
}

TEST_F(Errors, EachCode_HasItsClassOfExceptions)
{
    const std::pair<result::Code, std::type_index> rows[] = {
        {result::PolicyNotFound, typeid(NotFound)},    {result::TaskNotFound, typeid(NotFound)},
        {result::SectionNotFound, typeid(NotFound)},   {result::SettingNotFound, typeid(NotFound)},
        {result::FileChanged, typeid(Changed)},        {result::FileLocked, typeid(Locked)},
        {result::ReadOnly, typeid(ReadOnly)},          {result::WrittenNotFlushed, typeid(NotFlushed)},
        {result::SyntaxError, typeid(SyntaxError)},    {result::NotValidInItsEncoding, typeid(InvalidText)},
        {result::FileNotFound, typeid(FileError)},     {result::PathNotFound, typeid(FileError)},
        {result::TooManyOpenFiles, typeid(FileError)}, {result::AccessDenied, typeid(FileError)},
        {result::WriteProtected, typeid(FileError)},   {result::SharingViolation, typeid(FileError)},
        {result::NotSupported, typeid(FileError)},     {result::DiskFull, typeid(FileError)},
        {result::InvalidName, typeid(FileError)},      {result::NameTooLong, typeid(FileError)},
        {result::FileTooLarge, typeid(FileError)},     {result::QuotaExceeded, typeid(FileError)},
        {result::InputOutputError, typeid(FileError)},
    };
    for (const result::Meaning& meaning : result::kMeanings) {
        const auto row = std::find_if(std::begin(rows), std::end(rows),
                                      [&](const auto& candidate) { return candidate.first == meaning.code; });
        const std::type_index expected = row == std::end(rows) ? std::type_index(typeid(Error)) : row->second;
        EXPECT_EQ(ClassOf(meaning.code), expected) << meaning.name;
    }
}

TEST_F(Errors, Message_HasSubjectSentenceNameAndNumber)
{
    const auto error = Thrown<NotFound>([&] { static_cast<void>(Open().Policy("Nobody")); });
    EXPECT_EQ(error.what(), Path() +
                                ": policy Nobody: There is no product policy with that software ID. [PolicyNotFound, "
                                "0xFFFFFB49]");
    EXPECT_EQ(error.Code(), result::PolicyNotFound);
    EXPECT_EQ(error.Name(), "PolicyNotFound");
    EXPECT_EQ(error.Sentence(), "There is no product policy with that software ID.");
    EXPECT_EQ(error.Subject(), Path() + ": policy Nobody");
    EXPECT_EQ(error.File(), Path());
    EXPECT_EQ(error.Line(), 0u);
    EXPECT_EQ(error.Column(), 0u);
}

TEST_F(Errors, Message_IsOneLineWithoutControlCharacters)
{
    constexpr std::string_view kName("a\n\r\tb\0c\x1B[1m\x7F\xC2\x9B\xC2\xA0\xC3\x9B\\n", 20);
    const auto error = Thrown<NotFound>([&] { static_cast<void>(Open().Policy(kName)); });
    EXPECT_EQ(error.what(),
              Path() +
                  ": policy a\\n\\r\\tb\\x00c\\x1B[1m\\x7F\\x9B\xC2\xA0\xC3\x9B\\n: There is no product policy with "
                  "that software ID. [PolicyNotFound, 0xFFFFFB49]");
    EXPECT_EQ(error.Subject(), Path() + ": policy " + std::string(kName));
    EXPECT_EQ(client::WithVisibleControls("\xC2"), "\xC2");
    EXPECT_EQ(client::WithVisibleControls("\xC2!"), "\xC2!");
}

TEST_F(Errors, EveryLookup_NamesWhatIsMissing)
{
    const PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    const Task task = file.Task("Scanner", "Daily");
    const auto subject = [](const auto& call) { return Thrown<NotFound>(call).Subject(); };
    const std::string inPolicy = Path() + ": policy Scanner: section ";
    EXPECT_EQ(subject([&] { static_cast<void>(file.Task("Scanner", "None")); }), Path() + ": task Scanner None");
    EXPECT_EQ(subject([&] { file.RemovePolicy("Nobody"); }), Path() + ": policy Nobody");
    EXPECT_EQ(subject([&] { file.RemoveTask("Nobody", "Daily"); }), Path() + ": task Nobody Daily");
    EXPECT_EQ(subject([&] { static_cast<void>(policy.Value("No", "x")); }), inPolicy + R"("No", setting "x")");
    EXPECT_EQ(subject([&] { static_cast<void>(policy.Stored("General", "x")); }),
              inPolicy + R"("General", setting "x")");
    EXPECT_EQ(subject([&] { policy.Remove("General", "x"); }), inPolicy + R"("General", setting "x")");
    EXPECT_EQ(subject([&] { policy.Remove("No"); }), inPolicy + R"("No")");
    EXPECT_EQ(subject([&] { static_cast<void>(policy.Section("No").Names()); }), inPolicy + R"("No")");
    EXPECT_EQ(subject([&] { static_cast<void>(policy.Section("No").begin()); }), inPolicy + R"("No")");
    EXPECT_EQ(subject([&] { static_cast<void>(task.Value("Plan", "x")); }),
              Path() + R"(: task Scanner Daily: section "Plan", setting "x")");
}

TEST_F(Errors, MissingFile_IsAFileError)
{
    const auto error = Thrown<FileError>([&] { static_cast<void>(PolicyFile::Open(PathOf(u"none.xml"))); });
    EXPECT_EQ(error.Code(), result::FileNotFound);
    EXPECT_EQ(error.File(), PathOf(u"none.xml"));
    EXPECT_EQ(error.what(), PathOf(u"none.xml") + ": The file does not exist. [FileNotFound, 0x80070002]");
    EXPECT_EQ(Thrown<FileError>([&] { static_cast<void>(Edit::Open(PathOf(u"none.xml"))); }).File(),
              PathOf(u"none.xml"));
    EXPECT_EQ(Thrown<FileError>([&] { Open().SaveAs(PathOf(u"none/policy.xml")); }).File(), PathOf(u"none/policy.xml"));
}

TEST_F(Errors, SyntaxError_HasItsPlace)
{
    m_folder.Write(u"bad.xml", "<R>\n<a>\n    </b>");
    for (const bool locked : {false, true}) {
        const std::string path = PathOf(u"bad.xml");
        const auto error = Thrown<SyntaxError>(
            [&] { locked ? static_cast<void>(Edit::Open(path)) : static_cast<void>(PolicyFile::Open(path)); });
        EXPECT_EQ(error.File(), path);
        EXPECT_EQ(error.Line(), 3u);
        EXPECT_EQ(error.Column(), 7u);
        EXPECT_EQ(error.Sentence(), "mismatched tag");
        EXPECT_EQ(error.what(), path + ":3:7: mismatched tag [SyntaxError, 0xFFFFFBAE]");
    }
}

TEST_F(Errors, BytesThatAreNotValid_HaveTheirPlace)
{
    m_folder.Write(u"bad.xml", "<R>\n a\xFF</R>");
    const auto error = Thrown<InvalidText>([&] { static_cast<void>(PolicyFile::Open(PathOf(u"bad.xml"))); });
    EXPECT_EQ(error.File(), PathOf(u"bad.xml"));
    EXPECT_EQ(error.Line(), 2u);
    EXPECT_EQ(error.Column(), 3u);
}

TEST_F(Errors, FileThatIsReadOnly_RefusesEdits)
{
    const PolicyFile file = Open(Access::ReadOnly);
    EXPECT_THROW(file.RemovePolicy("Scanner"), ReadOnly);
    EXPECT_THROW(file.RemoveTask("Scanner", "Daily"), ReadOnly);
    EXPECT_THROW(file.Policy("Scanner").HandBack(), ReadOnly);
    EXPECT_THROW(file.Add(file.Task("Scanner", "Daily")), ReadOnly);
    EXPECT_THROW(file.Save(), ReadOnly);
}

TEST_F(Errors, ForeignChangeBeforeSave_ThrowsAndIsNotOverwritten)
{
    const PolicyFile file = Open();
    EXPECT_FALSE(file.HasChangedOnDisk());
    ChangeOnDisk();
    EXPECT_TRUE(file.HasChangedOnDisk());
    const auto error = Thrown<Changed>([&] { file.Policy("Scanner").Set("General", "Mode", "quick").Save(); });
    EXPECT_EQ(error.File(), Path());
    EXPECT_EQ(m_folder.Read(u"policy.xml"), std::string(kSample) + "\n");
    EXPECT_EQ(file.Policy("Scanner").Value("General", "Mode"), "quick");
}

TEST_F(Errors, FileThatIsGone_IsNotWrittenAgain)
{
    const PolicyFile file = Open();
    std::filesystem::remove(m_folder.Folder() / "policy.xml");
    EXPECT_TRUE(file.HasChangedOnDisk());
    EXPECT_THROW(file.Save(), Changed);
    EXPECT_FALSE(m_folder.Has(u"policy.xml"));
}

TEST_F(Errors, ObjectWithoutAFile_IsNotInitialised)
{
    const PolicyFile file(Create<IPolicyFile>());
    EXPECT_EQ(Thrown<Error>([&] { static_cast<void>(file.Policy("x")); }).Code(), result::NotInitialised);
    EXPECT_EQ(Thrown<Error>([&] { static_cast<void>(file.PolicyIds()); }).Code(), result::NotInitialised);
    EXPECT_EQ(Thrown<Error>([&] { static_cast<void>(file.Text()); }).Code(), result::NotInitialised);
    EXPECT_EQ(Thrown<Error>([&] { file.Save(); }).Code(), result::NotInitialised);
    EXPECT_EQ(Thrown<Error>([&] { PolicyFile(nullptr, "x"); }).Code(), result::NotInitialised);
}

TEST_F(Errors, ObjectOfAnOlderComponent_LacksTheCall)
{
    ForeignProduct old({0, u"Old"}, {0, u""});
    const Policy policy{ComPtr<IPolicyProduct>(&old)};
    const auto error = Thrown<Error>([&] { static_cast<void>(policy.SectionNames()); });
    EXPECT_EQ(error.Code(), static_cast<result::Code>(E_NOINTERFACE));
    EXPECT_EQ(error.Name(), "");
    EXPECT_STREQ(error.what(),
                 "the component zuPolicyManager64: The component is older than this call. [unknown code, 0x80004002]");
    EXPECT_EQ(policy.SoftwareId(), "Old");
}

TEST_F(Errors, StaleErrorInformation_IsNotTakenForAFailureWithout)
{
    ForeignProduct old({0, u"Old"}, {0, u""});
    const Policy policy{ComPtr<IPolicyProduct>(&old)};
    LeaveStaleErrorInformation();
    EXPECT_EQ(Thrown<Error>([&] { static_cast<void>(policy.SectionNames()); }).Sentence(),
              "The component is older than this call.");
    static_cast<void>(client::TakeDescription());
}

TEST_F(Errors, Copies_ShareTheirTexts)
{
    const auto error = Thrown<NotFound>([&] { static_cast<void>(Open().Policy("Nobody")); });
    static_assert(std::is_nothrow_copy_constructible_v<Error>);
    const Error copy = error;  // NOLINT(cppcoreguidelines-slicing): an Error is a value
    EXPECT_EQ(&copy.Subject(), &error.Subject());
}

struct PlaceRow {
    const char* description;
    const char* knownFile;
    const char* file;
    std::uint32_t line;
    std::uint32_t column;
    const char* reason;
};

TEST_F(Errors, Places_AreFoundInDescriptions)
{
    const PlaceRow rows[] = {
        {"a.xml:3:7: bad", "a.xml", "a.xml", 3, 7, "bad"},
        {"a.xml:3:7: bad", "", "a.xml", 3, 7, "bad"},
        {"C:\\x:1:2: y:3:4: bad", "C:\\x:1:2: y", "C:\\x:1:2: y", 3, 4, "bad"},
        {"C:\\x:1:2: y:3:4: bad", "", "C:\\x:1:2: y", 3, 4, "bad"},
        {"a:3:4: b:5:6: c", "a", "a", 3, 4, "b:5:6: c"},
        {"a:3:4: b:5:6: c", "other", "a:3:4: b", 5, 6, "c"},
        {"a:1:4294967295: bad", "a", "a", 1, 4294967295u, "bad"},
        {"a:1:2: ", "a", "a", 1, 2, ""},
        {"a:1:2: reason: with: colons", "a", "a", 1, 2, "reason: with: colons"},
    };
    for (const PlaceRow& row : rows) {
        const std::optional<client::Place> place = client::PlaceIn(row.description, row.knownFile);
        ASSERT_TRUE(place) << row.description;
        EXPECT_EQ(place->file, row.file) << row.description;
        EXPECT_EQ(place->line, row.line) << row.description;
        EXPECT_EQ(place->column, row.column) << row.description;
        EXPECT_EQ(place->reason, row.reason) << row.description;
    }
}

TEST_F(Errors, DescriptionsWithoutAPlace_HaveNone)
{
    for (const char* description :
         {"", ":", "a", "a:", "a:1", "a:1:2", "a:1:2:", "a:1:2:bad", "a:1: bad", "a:0:2: bad", "a:1:0: bad",
          "a:-1:2: bad", "a: 1:2: bad", "a:1:4294967296: bad", ":1:2: bad", "a:x:2: bad", "a:1:x: bad"}) {
        EXPECT_FALSE(client::PlaceIn(description, "a")) << description;
        EXPECT_FALSE(client::PlaceIn(description, "")) << description;
    }
}

}  // namespace
}  // namespace zupm::test
