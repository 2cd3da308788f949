// What is odd in a policy file: IPolicyNotices.
#include <string>
#include <vector>

#include "PolicyFileTest.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

using namespace std::literals;

/// One notice as it is read.
struct Odd {
    LONG kind = 0;
    LONG line = 0;
    LONG column = 0;
    std::u16string softwareId;
    std::u16string taskId;
    std::u16string text;

    friend bool operator==(const Odd&, const Odd&) = default;
};
void PrintTo(const Odd& odd, std::ostream* out)
{
    *out << odd.kind << " at " << odd.line << ':' << odd.column << ' ' << Utf8(odd.softwareId) << '/'
         << Utf8(odd.taskId) << ": " << Utf8(odd.text);
}

constexpr LONG kPolicyAgain = 1;
constexpr LONG kTaskAgain = 2;
constexpr LONG kSectionAgain = 3;
constexpr LONG kSettingAgain = 4;
constexpr LONG kNoRoots = 5;
constexpr LONG kNotANumber = 6;
constexpr LONG kSameInIni = 7;
constexpr LONG kSameAsField = 8;

/// A file with these in its one policy and its one "TaskRoot"; both begin at the start of a line.
std::string FileWith(const std::string& products, const std::string& groups)
{
    return "<F>\n<PolicyRoot><PolicyGroup><Policy>\n" + products +
           "</Policy></PolicyGroup></PolicyRoot>\n<TaskRoot>\n" + groups + "</TaskRoot></F>";
}

std::string TaskWith(const std::string& sections, const std::string& attributes = {})
{
    return FileWith(
        "", "<TaskGroup SoftwareID='P' TaskID='T'" + attributes + "><Task>\n" + sections + "</Task></TaskGroup>");
}

class NoticesOfAFile : public PolicyFileTest {
protected:
    [[nodiscard]] ComPtr<IPolicyNotices> Take() const
    {
        ComPtr<IPolicyNotices> notices;
        const auto contents = ComPtr<IPolicyFile>(m_file.Object()).Query<IPolicyFileContents>();
        EXPECT_EQ(contents->get_Notices(notices.Put()), 0);
        return notices;
    }
    [[nodiscard]] static std::vector<Odd> Read(IPolicyNotices& notices)
    {
        LONG count = -1;
        EXPECT_EQ(notices.get_Count(&count), 0);
        std::vector<Odd> all;
        for (LONG i = 0; i < count; ++i) {
            Odd& odd = all.emplace_back();
            Bstr softwareId;
            Bstr taskId;
            Bstr text;
            EXPECT_EQ(notices.get_Kind(i, &odd.kind), 0);
            EXPECT_EQ(notices.get_Line(i, &odd.line), 0);
            EXPECT_EQ(notices.get_Column(i, &odd.column), 0);
            EXPECT_EQ(notices.get_SoftwareID(i, softwareId.Put()), 0);
            EXPECT_EQ(notices.get_TaskID(i, taskId.Put()), 0);
            EXPECT_EQ(notices.get_Text(i, text.Put()), 0);
            odd.softwareId = softwareId.Text();
            odd.taskId = taskId.Text();
            odd.text = text.Text();
        }
        return all;
    }
    [[nodiscard]] std::vector<Odd> Now() const { return Read(*Take()); }
    [[nodiscard]] std::vector<Odd> Of(const std::string& text)
    {
        EXPECT_EQ(LoadText(text, 1), 0);
        return Now();
    }
};

using Odds = std::vector<Odd>;

}  // namespace

TEST_F(NoticesOfAFile, SoundFile_HasNone)
{
    EXPECT_EQ(Of(FileWith("<Product SoftwareID='P'><Section name='S'><Setting name='a'/><Setting name='b'/></Section>"
                          "<Section name='T'><Setting name='a'/></Section></Product>",
                          "<TaskGroup SoftwareID='P' TaskID='T'><Task><Section name='S'><Setting name='a'>1</Setting>"
                          "</Section></Task></TaskGroup>")),
              Odds{});
    EXPECT_EQ(Of("<F><TaskRoot/></F>"), Odds{});
    EXPECT_EQ(Of("<F><PolicyRoot/></F>"), Odds{});
}

TEST_F(NoticesOfAFile, EntriesThatNoCallerReaches)
{
    EXPECT_EQ(
        Of(FileWith("<Product SoftwareID='P'>\n<Section name='S'>\n<Setting name='a'/>\n<Setting name='a'/>\n</Section>"
                    "\n <Section name='S'/>\n</Product>\n<Product SoftwareID='P'/>\n",
                    "<TaskGroup SoftwareID='P' TaskID='T'><Task/>\n <Task/></TaskGroup>\n"
                    "<TaskGroup TaskID='T' SoftwareID='P'><Task/></TaskGroup>\n")),
        (Odds{{kSettingAgain, 6, 1, u"P", u"", u"setting a of section S occurs again; only the first is used"},
              {kSectionAgain, 8, 2, u"P", u"", u"section S occurs again; both are read as one"},
              {kPolicyAgain, 10, 1, u"P", u"", u"policy P occurs again; only the first is used"},
              {kTaskAgain, 14, 2, u"P", u"T", u"task P T occurs again; only the first is used"},
              {kTaskAgain, 15, 38, u"P", u"T", u"task P T occurs again; only the first is used"}}));
}

TEST_F(NoticesOfAFile, EntriesThatDifferOrThatNoLookupFinds_AreNotOdd)
{
    EXPECT_EQ(Of(FileWith("<Product SoftwareID='P'/><Product SoftwareID='p'/><Product/><Product/><X SoftwareID='P'/>"
                          "<Product SoftwareID=''/>",
                          "<TaskGroup SoftwareID='P' TaskID='T'><X/><X/></TaskGroup>"
                          "<TaskGroup SoftwareID='P' TaskID='T'><Task/></TaskGroup>"
                          "<TaskGroup SoftwareID='T' TaskID='P'><Task/></TaskGroup><TaskGroup TaskID='T'><Task/><Task/>"
                          "</TaskGroup>")),
              Odds{});
    EXPECT_EQ(Of("<F><PolicyRoot/><Policy><Product SoftwareID='P'/><Product SoftwareID='P'/></Policy></F>"), Odds{});
}

TEST_F(NoticesOfAFile, InsideOfAnEntryThatIsNotReached_IsNotOdd)
{
    const Odds odds =
        Of(FileWith("<Product SoftwareID='P'/><Product SoftwareID='P'><S name='s'/><S name='s'/></Product>", ""));
    ASSERT_EQ(odds.size(), 1U);
    EXPECT_EQ(odds[0].kind, kPolicyAgain);
}

TEST_F(NoticesOfAFile, SettingsOfSectionsThatAreReadAsOne_AreCompared)
{
    const Odds odds =
        Of(FileWith("<Product SoftwareID='P'><X name='S'><Y name='a'/></X><X name='T'><Y name='a'/></X>\n<Z name='S'>"
                    "<V name='a'/><V name='b'/></Z></Product><Product SoftwareID='Q'><X name='S'><Y name='a'/></X>"
                    "</Product>",
                    ""));
    ASSERT_EQ(odds.size(), 2U);
    EXPECT_EQ(odds[0].text, u"section S occurs again; both are read as one");
    EXPECT_EQ(odds[1].text, u"setting a of section S occurs again; only the first is used");
    EXPECT_EQ(odds[1].line, 4);
}

TEST_F(NoticesOfAFile, SameNamesWrittenDifferently_AreTheSame)
{
    const Odds odds = Of(FileWith("<Product SoftwareID='a&#66;\tc'/><Product SoftwareID=\"&#x61;B c\"/>", ""));
    ASSERT_EQ(odds.size(), 1U);
    EXPECT_EQ(odds[0].softwareId, u"aB c");
}

TEST_F(NoticesOfAFile, FileThatMayBeNoPolicyFile)
{
    const std::u16string text =
        u"the file has neither a PolicyRoot nor a TaskRoot element; it may not be a policy file";
    EXPECT_EQ(Of("<!-- a\npage -->\n <html/>"), (Odds{{kNoRoots, 3, 2, u"", u"", text}}));
    EXPECT_EQ(Of("<html><x><PolicyRoot/></x></html>"), (Odds{{kNoRoots, 1, 1, u"", u"", text}}));
}

TEST_F(NoticesOfAFile, VersionsThatAreNoNumbers)
{
    const auto file = [](const std::string& version) {
        return "<F>\n<PolicyRoot version='" + version + "'>\n<PolicyGroup>\n<Policy PolicyVersion='" + version +
               "'><Product SoftwareID='A'/></Policy>\n</PolicyGroup>\n</PolicyRoot>\n<TaskRoot version='" + version +
               "'>\n<TaskGroup SoftwareID='P' TaskID='T' TaskVersion='" + version + "'>\n<Task TaskVersion='" +
               version + "'/>\n</TaskGroup>\n</TaskRoot>\n</F>";
    };
    for (const char* number : {"0", "20240311081500", "-1", "+7", " 12 ", "&#9;5", "18446744073709551615"}) {
        EXPECT_EQ(Of(file(number)), Odds{}) << number;
    }
    for (const char* text : {"", " ", "-", "12abc", "1 2", "0x10", "1.5", "v1"}) {
        const std::u16string what = u" is not a number: \"" + Utf16(text) + u"\"";
        EXPECT_EQ(Of(file(text)), (Odds{{kNotANumber, 2, 1, u"", u"", u"attribute version" + what},
                                        {kNotANumber, 4, 1, u"", u"", u"attribute PolicyVersion" + what},
                                        {kNotANumber, 7, 1, u"", u"", u"attribute version" + what},
                                        {kNotANumber, 8, 1, u"P", u"T", u"attribute TaskVersion" + what},
                                        {kNotANumber, 9, 1, u"P", u"T", u"attribute TaskVersion" + what}}));
    }
}

TEST_F(NoticesOfAFile, SettingsThatAnIniFileTakesForOne)
{
    EXPECT_EQ(Of(TaskWith("<S name='General'><V name='Mode'>1</V>\n<V name=' mode '>2</V>\n<V name='MODE'>1</V></S>\n"
                          "<S name='GENERAL'>\n<V name='mode'>3</V><V name='other'>3</V></S>\n")),
              (Odds{{kSameInIni, 7, 1, u"P", u"T",
                     u"setting  mode  of section General and setting Mode of section General have the same name in an "
                     u"INI file; only one is kept"},
                    {kSameInIni, 10, 1, u"P", u"T",
                     u"setting mode of section GENERAL and setting Mode of section General have the same name in an "
                     u"INI file; only one is kept"}}));
}

TEST_F(NoticesOfAFile, SettingsOfAPolicyNeverGoIntoAnIniFile)
{
    EXPECT_EQ(Of(FileWith("<Product SoftwareID='P'><S name='s'><V name='a'>1</V><V name='A'>2</V></S></Product>", "")),
              Odds{});
}

TEST_F(NoticesOfAFile, SettingsThatAnIniFileRefuses_MeetNothing)
{
    EXPECT_EQ(Of(TaskWith("<S name='s'><V name='a'>1</V><V name='A'>2&#10;</V><V name='B'>x</V><V name='b&#13;'>y</V>"
                          "</S><S name='S&#10;'><V name='a'>9</V></S>")),
              Odds{});
}

TEST_F(NoticesOfAFile, ValuesAreComparedByTheirMeaning)
{
    for (const char* same : {"<V name='A'>x&#62;y</V>", "<V name='A'><![CDATA[x>y]]></V>",
                             "<V name='A'>x<!-- c -->&gt;<i>not here</i>y</V>", "<V name='A'>x<i/>><i><i/></i>y</V>"}) {
        EXPECT_EQ(Of(TaskWith("<S name='s'><V name='a'>x>y</V>"s + same + "</S>")), Odds{}) << same;
    }
    for (const char* other : {"<V name='A'/>", "<V name='A'>x</V>", "<V name='A'><i>x>y</i></V>"}) {
        EXPECT_EQ(Of(TaskWith("<S name='s'><V name='a'>x>y</V>"s + other + "</S>")).size(), 1U) << other;
    }
    EXPECT_EQ(Of(TaskWith("<S name='s'><V name='a'/><V name='A'></V></S>")), Odds{});
}

TEST_F(NoticesOfAFile, SettingsThatReplaceAFieldOfTheTask)
{
    const std::string attributes =
        " DisplayName='d' Platforms='w' TaskPriority=' 7x' CreatorID='c' TaskType='t' TaskVersion='3'";
    const struct {
        const char* name;
        const char* same;
    } rows[] = {{"TaskName", "d"}, {"Platforms", "w"}, {"TaskPriority", "7"},      {"SoftwareName", "P"},
                {"TaskID", "T"},   {"TaskType", "t"},  {"CreatorSoftwareID", "c"}, {"TaskVersion", ""}};
    for (const auto& row : rows) {
        const auto file = [&](const std::string& value) {
            return TaskWith("<S name=' TASK'><V name='" + std::string(row.name) + " '>" + value + "</V></S>",
                            attributes);
        };
        EXPECT_EQ(Of(file(row.same)), Odds{}) << row.name;
        const Odds odds = Of(file("other"));
        ASSERT_EQ(odds.size(), 1U) << row.name;
        EXPECT_EQ(odds[0].kind, kSameAsField);
        EXPECT_EQ(odds[0].text, u"setting " + Utf16(row.name) + u"  of section  TASK and the task's field " +
                                    Utf16(row.name) + u" have the same name in an INI file; only one is kept");
    }
    EXPECT_EQ(Of(TaskWith("<S name='Task'><V name='taskname'>invalid</V><V name='TaskPriority'>0</V></S>")), Odds{})
        << "what loading takes for attributes that the file does not have";
}

TEST_F(NoticesOfAFile, LinesAndColumns_CountAsInOtherMessages)
{
    const struct {
        std::string before;
        LONG line;
        LONG column;
    } rows[] = {
        {"", 3, 1},
        {"\n", 4, 1},
        {"\r\n", 4, 1},
        {"\r", 4, 1},
        {"\n\r", 5, 1},
        {"\r\r\n \n", 6, 1},
        {"<!-- \xC3\xBC\xF0\x9F\x9A\x80 -->", 3, 12},
        {"\r\n<!-- \xC3\xBC\xF0\x9F\x9A\x80 -->\t", 4, 13},
    };
    for (const auto& row : rows) {
        const std::string twice = "<Product SoftwareID='P'/>";
        const Odds odds = Of(FileWith(row.before + twice + "\r\r\n" + twice, ""));
        ASSERT_EQ(odds.size(), 1U);
        EXPECT_EQ(odds[0].line, row.line + 2) << row.before;
        EXPECT_EQ(odds[0].column, 1) << row.before;
        const Odds first = Of(FileWith("<Product SoftwareID='P'/>" + row.before + "<Product SoftwareID='P'/>", ""));
        ASSERT_EQ(first.size(), 1U);
        EXPECT_EQ(first[0].line, row.line) << row.before;
        EXPECT_EQ(first[0].column, row.line == 3 ? row.column + 25 : row.column) << row.before;
    }
}

TEST_F(NoticesOfAFile, MarkupThatLooksLikeTags_IsPassedOver)
{
    EXPECT_EQ(Of("<?xml version='1.0'?><?p <Product> '?><!DOCTYPE F [<!-- ' <a> --><?q '> ?><!ELEMENT F ANY>"
                 "<!ATTLIST F a CDATA '!>'>]><!-- <F> --><F><![CDATA[<PolicyRoot>]]><TaskRoot a='>' b=\"'>\"/></F>"
                 "<!-- > --><?r <?>"),
              Odds{});
}

TEST_F(NoticesOfAFile, LongNames_AreCutInSentencesAlone)
{
    const std::string name = std::string(199, 's') + "\xC3\xBC" + std::string(5000, 's');
    const Odds odds = Of(FileWith(
        "<Product SoftwareID='" + name + "'><S name='" + name + "'><V name='a'/><V name='a'/></S></Product>", ""));
    ASSERT_EQ(odds.size(), 1U);
    EXPECT_EQ(odds[0].softwareId, Utf16(name));
    EXPECT_EQ(odds[0].text,
              u"setting a of section " + std::u16string(199, u's') + u"... occurs again; only the first is used");
}

TEST_F(NoticesOfAFile, AreAboutTheDocumentAsItIsNow)
{
    ASSERT_EQ(
        LoadText("<F>\n<PolicyRoot><PolicyGroup>\n<Policy>\n <Product SoftwareID='P'/>\n <Product SoftwareID='P'/>"
                 "\n</Policy></PolicyGroup></PolicyRoot></F>"),
        0);
    const ComPtr<IPolicyNotices> before = Take();
    EXPECT_EQ(Read(*before).size(), 1U);
    ASSERT_EQ(m_file.RemovePolicy(u"P"), 0);
    EXPECT_EQ(Now(), Odds{});
    EXPECT_EQ(Read(*before).size(), 1U) << "a list that was handed out never changes";
    m_file = PolicyFileClient();
    EXPECT_EQ(Read(*before)[0].line, 5);
}

TEST_F(NoticesOfAFile, FailsWhileNothingIsLoaded)
{
    const auto contents = ComPtr<IPolicyFile>(m_file.Object()).Query<IPolicyFileContents>();
    EXPECT_EQ(contents->get_Notices(nullptr), result::BadArgument);
    OutObject<IPolicyNotices> slot;
    EXPECT_EQ(contents->get_Notices(slot.Slot()), result::NotInitialised);
    EXPECT_TRUE(slot.Untouched());
}

TEST_F(NoticesOfAFile, PlacesOutsideOfTheList_AreRefused)
{
    ASSERT_EQ(LoadText("<html/>"), 0);
    const ComPtr<IPolicyNotices> notices = Take();
    EXPECT_EQ(notices->get_Count(nullptr), result::BadArgument);
    EXPECT_EQ(notices->get_Kind(0, nullptr), result::BadArgument);
    EXPECT_EQ(notices->get_Text(0, nullptr), result::BadArgument);
    for (const LONG index : {-1, 1, 1000}) {
        LONG number = 7;
        Bstr text(u"old");
        EXPECT_EQ(notices->get_Kind(index, &number), result::BadArgument) << index;
        EXPECT_EQ(notices->get_Line(index, &number), result::BadArgument) << index;
        EXPECT_EQ(notices->get_Column(index, &number), result::BadArgument) << index;
        EXPECT_EQ(notices->get_SoftwareID(index, text.Slot()), result::BadArgument) << index;
        EXPECT_EQ(notices->get_TaskID(index, text.Slot()), result::BadArgument) << index;
        EXPECT_EQ(notices->get_Text(index, text.Slot()), result::BadArgument) << index;
        EXPECT_EQ(number, 7);
        EXPECT_EQ(text.Text(), u"old");
    }
}

TEST_F(NoticesOfAFile, AreReadByName)
{
    ASSERT_EQ(LoadText(FileWith("<Product SoftwareID='P'/><Product SoftwareID='P'/>", "")), 0);
    const CallOutcome found = MemberCall(m_file.Object(), u"Notices").Get();
    ASSERT_EQ(found.code, 0);
    const ComPtr<IPolicyNotices> notices = found.object.Query<IPolicyNotices>();
    ASSERT_TRUE(notices);
    EXPECT_EQ(MemberCall(notices.Get(), u"count").Get().number, 1);
    EXPECT_EQ(MemberCall(notices.Get(), u"Kind").In(LONG{0}).Get().number, kPolicyAgain);
    EXPECT_EQ(MemberCall(notices.Get(), u"Line").In(LONG{0}).Get().number, 3);
    EXPECT_EQ(MemberCall(notices.Get(), u"Column").In(LONG{0}).Get().number, 26);
    EXPECT_EQ(MemberCall(notices.Get(), u"SoftwareID").In(LONG{0}).Get().text, u"P");
    EXPECT_EQ(MemberCall(notices.Get(), u"TaskID").In(LONG{0}).Get().type, VT_BSTR);
    EXPECT_EQ(MemberCall(notices.Get(), u"Text").In(LONG{0}).Get().text,
              u"policy P occurs again; only the first is used");
    const CallOutcome outside = MemberCall(notices.Get(), u"Line").In(LONG{1}).Get();
    EXPECT_EQ(outside.code, result::BadArgument);
}

}  // namespace zupm::test
