// A task's dump into an INI file, byte for byte.
#include "common/Macros.h"
#include "tests/support/IniReader.h"
#include "tests/support/LogCapture.h"
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr std::string_view kNewTask =
    "[Task]\r\n"
    "TaskName=invalid\r\n"
    "Platforms=invalid\r\n"
    "TaskPriority=0\r\n"
    "SoftwareName=invalid\r\n"
    "TaskID=invalid\r\n"
    "CreatorSoftwareID=invalid\r\n"
    "TaskType=invalid\r\n"
    "TaskVersion=\r\n";

class TaskIni : public TaskTest {
protected:
    HRESULT Dump(const TaskClient& task)
    {
        const Bstr path(m_path);
        return task.Object()->WriteTaskDataToIniFile(path.Get());
    }
    [[nodiscard]] std::string Bytes() const { return m_folder.Read(u"task.ini"); }
    /// What follows the section "Task" of a new task, as text: in which encoding a file holds what ASCII cannot is
    /// the target's own affair (UTF-8; the code page; UTF-16 for what that lacks).
    [[nodiscard]] std::u16string TextAfterTask() const
    {
        const std::u16string text = DecodeIni(Bytes());
        EXPECT_TRUE(text.starts_with(std::u16string(kNewTask.begin(), kNewTask.end())));
        return text.substr(std::min(kNewTask.size(), text.size()));
    }

    std::u16string m_path = m_folder.Path(u"task.ini");
    TaskClient m_task{Create<IPolicyTask>()};
};

}  // namespace

TEST_F(TaskIni, OfANewTaskHoldsItsIdentityAndNothingElse)
{
    EXPECT_EQ(Dump(m_task), 0);
    EXPECT_EQ(Bytes(), kNewTask);
}

TEST_F(TaskIni, HasNamesOfItsOwnForTheIdentityFields)
{
    LoadGroups(
        "<TaskGroup SoftwareID='software' TaskID='id' CreatorID='creator' DisplayName='name' Platforms='x64' "
        "TaskType='type' TaskPriority='-3'><Task TaskVersion='20250101000000'/></TaskGroup>\n");
    EXPECT_EQ(Dump(m_file.Task(u"software", u"id")), 0);
    EXPECT_EQ(Bytes(),
              "[Task]\r\n"
              "TaskName=name\r\n"
              "Platforms=x64\r\n"
              "TaskPriority=-3\r\n"
              "SoftwareName=software\r\n"
              "TaskID=id\r\n"
              "CreatorSoftwareID=creator\r\n"
              "TaskType=type\r\n"
              "TaskVersion=20250101000000\r\n");
}

TEST_F(TaskIni, HasSectionsAndSettingsInCodeUnitOrder)
{
    const char16_t* settings[][3] = {{u"b", u"z", u"1"},  {u"B", u"y", u"2"}, {u"C", u"x10", u"3"},
                                     {u"C", u"x2", u"4"}, {u"C", u"X", u"5"}, {u"\u00C4", u"x", u"6"}};
    for (const auto& [section, name, value] : settings) {
        ASSERT_EQ(m_task.Put(section, name, value), 0);
    }
    EXPECT_EQ(Dump(m_task), 0);
    // INI files know no case: "b" goes into the section that "B" began, and "X" and "x" would be one key.
    EXPECT_EQ(TextAfterTask(),
              u"[B]\r\ny=2\r\nz=1\r\n"
              u"[C]\r\nX=5\r\nx10=3\r\nx2=4\r\n"
              u"[\u00C4]\r\nx=6\r\n");
}

TEST_F(TaskIni, HasValuesRawWithoutMacroExpansion)
{
    ASSERT_EQ(m_task.Put(u"S", u"x", u"<Macro> & \"q\" \U0001F600"), 0);
    RegisterMacro(u"Macro", u"expanded");
    EXPECT_EQ(Dump(m_task), 0);
    UnregisterAllMacros();
    EXPECT_EQ(TextAfterTask(), u"[S]\r\nx=<Macro> & \"q\" \U0001F600\r\n");
}

TEST_F(TaskIni, HasSettingsOfTheSectionTaskInPlaceOfTheIdentityFields)
{
    LoadGroups(
        "<TaskGroup SoftwareID='S' TaskID='T' DisplayName='attribute'><Task><Section name='Task'>"
        "<Setting name='TaskName'>setting</Setting><Setting name='Own'>1</Setting></Section></Task>"
        "</TaskGroup>\n");
    LogCapture log;
    const TaskClient task = m_file.Task(u"S", u"T");
    static_cast<void>(log.Take());
    EXPECT_EQ(Dump(task), 0);
    EXPECT_EQ(log.Take(),
              (std::vector<LogLine>{{8,
                                     "CXMLDataObject::WriteAllSettingsToIniFile() -- Setting TaskName of the section "
                                     "Task replaces another of that name in the INI file"}}));
    EXPECT_EQ(Bytes(),
              "[Task]\r\n"
              "TaskName=setting\r\n"
              "Platforms=invalid\r\n"
              "TaskPriority=0\r\n"
              "SoftwareName=S\r\n"
              "TaskID=T\r\n"
              "CreatorSoftwareID=invalid\r\n"
              "TaskType=invalid\r\n"
              "TaskVersion=\r\n"
              "Own=1\r\n");
}

TEST_F(TaskIni, OfATaskThatRepeatsItsFieldsAsSettingsLogsNothing)
{
    LoadGroups("");
    m_task.Identify(u"S", u"T");
    ASSERT_EQ(m_task.PutDisplayName(u"a name"), 0);
    ASSERT_EQ(m_task.Object()->put_Priority(-7), 0);
    ASSERT_EQ(m_file.Object()->AddTask(m_task.Object(), 1), 0);
    const TaskClient task = m_file.Task(u"S", u"T");
    ASSERT_EQ(task.Get(u"Task", u"TaskName"), Ok(u"a name"));
    LogCapture log;
    EXPECT_EQ(Dump(task), 0);
    EXPECT_EQ(log.Take(), std::vector<LogLine>());
    EXPECT_NE(Bytes().find("TaskName=a name\r\n"), std::string::npos);
}

TEST_F(TaskIni, LeavesOutSettingsThatTheIndexDroppedAndEmptySections)
{
    LoadGroups(
        "<TaskGroup SoftwareID='invalid' TaskID='invalid'><Task><Section name='A'>"
        "<Setting name='x'>1</Setting><Setting name='x'>2</Setting></Section><Section name='Empty'/>"
        "<Section name='A'><Setting name='x'>3</Setting><Setting name='y'>4</Setting></Section></Task>"
        "</TaskGroup>\n");
    EXPECT_EQ(Dump(m_file.Task(u"invalid", u"invalid")), 0);
    EXPECT_EQ(TextAfterTask(), u"[A]\r\nx=1\r\ny=4\r\n");
}

TEST_F(TaskIni, KeepsTheOtherLinesOfAnExistingFile)
{
    m_folder.Write(u"task.ini",
                   "; mine\r\n[Other]\r\nx=1\r\n[task]\r\n; note\r\ntaskname=old\r\nMine=2\r\n[Last]\r\ny=3\r\n");
    ASSERT_EQ(m_task.Put(u"Other", u"X", u"9"), 0);
    EXPECT_EQ(Dump(m_task), 0);
    EXPECT_EQ(Difference("; mine\r\n[Other]\r\nx=1\r\n[task]\r\n; note\r\nMine=2\r\n[Last]\r\ny=3\r\n", Bytes()),
              "- x=1\\r\n"
              "+ x=9\\r\n"
              "+ taskname=invalid\\r\n"
              "+ Platforms=invalid\\r\n"
              "+ TaskPriority=0\\r\n"
              "+ SoftwareName=invalid\\r\n"
              "+ TaskID=invalid\\r\n"
              "+ CreatorSoftwareID=invalid\\r\n"
              "+ TaskType=invalid\\r\n"
              "+ TaskVersion=\\r\n");
}

TEST_F(TaskIni, WrittenTwice_IsTheSameFile)
{
    ASSERT_EQ(m_task.Put(u"A", u"x", u"\"quoted\""), 0);
    EXPECT_EQ(Dump(m_task), 0);
    const std::string first = Bytes();
    EXPECT_EQ(TextAfterTask(), u"[A]\r\nx=\"quoted\"\r\n");
    EXPECT_EQ(Dump(m_task), 0);
    EXPECT_EQ(Bytes(), first);
}

TEST_F(TaskIni, ASettingWithALineBreakIsLeftOutAndTheRestWritten)
{
    ASSERT_EQ(m_task.Put(u"A", u"a=b", u"1"), 0);
    ASSERT_EQ(m_task.Put(u"A", u"c", u"1\r\n[Evil]\r\nx=1"), 0);
    ASSERT_EQ(m_task.Put(u"A]\r\n[Evil", u"d", u"1"), 0);
    ASSERT_EQ(m_task.Put(u"A", u"z", u"1"), 0);
    EXPECT_EQ(Dump(m_task), 0);
    EXPECT_EQ(TextAfterTask(), u"[A]\r\na=b=1\r\nz=1\r\n");
}

TEST_F(TaskIni, AnIdentityFieldThatCannotBeWrittenEndsTheDumpAndEarlierOnesStay)
{
    const Bstr evil(u"S\r\n[Evil]");
    ASSERT_EQ(m_task.Object()->put_SoftwareID(evil.Get()), 0);
    ASSERT_EQ(m_task.Put(u"A", u"x", u"1"), 0);
    EXPECT_EQ(Dump(m_task), result::GeneralFailure);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::GeneralFailure));
    EXPECT_EQ(Bytes(), "[Task]\r\nTaskName=invalid\r\nPlatforms=invalid\r\nTaskPriority=0\r\n");
}

TEST_F(TaskIni, ToAnEmptyPathFailsAndWritesNothing)
{
    const Bstr empty(u"");
    EXPECT_EQ(m_task.Object()->WriteTaskDataToIniFile(empty.Get()), result::GeneralFailure);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::GeneralFailure));
    EXPECT_EQ(m_task.Object()->WriteTaskDataToIniFile(nullptr), result::GeneralFailure);
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{});
}

TEST_F(TaskIni, ToAPathThatCannotBeWrittenFails)
{
    for (const std::u16string& path :
         {m_folder.Path(u"missing") + m_folder.Path(u"x").substr(m_folder.Folder().u16string().size()),
          m_folder.Folder().u16string(), m_path + u'\0' + u"x"}) {
        const Bstr text(path);
        EXPECT_EQ(m_task.Object()->WriteTaskDataToIniFile(text.Get()), result::GeneralFailure) << Utf8(path);
    }
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{});
}

TEST_F(TaskIni, IsWrittenByNameToo)
{
    EXPECT_EQ(MemberCall(m_task.Object(), u"WriteTaskDataToIniFile").In(Bstr(m_path)).Call().code, 0);
    EXPECT_EQ(Bytes(), kNewTask);
    const CallOutcome failed = MemberCall(m_task.Object(), u"WriteTaskDataToIniFile").In(Bstr(u"")).Call();
    EXPECT_EQ(failed.code, result::GeneralFailure);
    EXPECT_EQ(failed.description, result::SentenceFor(result::GeneralFailure));
}

TEST_F(TaskIni, DoesNotChangeTheTask)
{
    const TextResult before = m_task.Data();
    EXPECT_EQ(Dump(m_task), 0);
    EXPECT_EQ(m_task.Data(), before);
    EXPECT_EQ(m_task.Version(), Ok(u""));
}

}  // namespace zupm::test
