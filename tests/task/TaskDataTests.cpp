// The XML text of a task: what reading it writes into the private copy first.
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

class TaskData : public TaskTest {
protected:
    /// The text of m_task with a line break after each tag that ends a line below.
    [[nodiscard]] std::string Data(const TaskClient& task) const
    {
        const TextResult data = task.Data();
        EXPECT_EQ(data.code, 0);
        return Utf8(data.text.value_or(u"(null)"));
    }

    TaskClient m_task{Create<IPolicyTask>()};
};

constexpr char kNewTask[] =
    R"(<TaskData><TaskGroup Path="0_4" TaskID="invalid" DisplayName="invalid" TaskType="invalid" )"
    R"(SoftwareID="invalid" CreatorID="invalid" Platforms="invalid" TaskPriority="0" TaskVersion="20260102030405">)"
    R"(<Task TaskVersion="20260102030405" PathID="0_4">)"
    R"(<Section name="Task"><Setting name="TaskID">invalid</Setting><Setting name="TaskName">invalid</Setting>)"
    R"(<Setting name="TaskType">invalid</Setting><Setting name="Platforms">invalid</Setting>)"
    R"(<Setting name="TaskPriority">0</Setting></Section>)"
    R"(<Section name="General"><Setting name="TaskType">invalid</Setting>)"
    R"(<Setting name="wTaskType">invalid</Setting></Section>)"
    R"(</Task></TaskGroup></TaskData>)";

constexpr char kFileTask[] =
    "<TaskGroup SoftwareID='S' TaskID='T' DisplayName='old' TaskPriority='4' TaskVersion='1' own=\"kept\">\n"
    "  <Task TaskVersion=\"17\" more='kept'>\n"
    "    <!-- kept -->\n"
    "    <Section name=\"Task\">\n"
    "      <Setting name=\"TaskName\">old</Setting>\n"
    "    </Section>\n"
    "    <Section name=\"Own\">\n"
    "      <Setting name=\"x\">1</Setting>\n"
    "    </Section>\n"
    "  </Task>\n"
    "</TaskGroup>\n";

}  // namespace

TEST_F(TaskData, OfANewTaskHoldsTheIdentityFieldsAndNoOtherSections)
{
    EXPECT_EQ(Data(m_task), kNewTask);
}

TEST_F(TaskData, ReadAgain_ChangesTheStampsAlone)
{
    const std::string first = Data(m_task);
    EXPECT_EQ(Data(m_task), first);
    m_clock.Advance(std::chrono::seconds(1));
    std::string expected = first;
    for (std::size_t at = 0; (at = expected.find("030405", at)) != std::string::npos;) {
        expected.replace(at, 6, "030406");
    }
    EXPECT_EQ(Data(m_task), expected);
    EXPECT_NE(expected, first);
}

TEST_F(TaskData, LeavesTheVersionAtTheStampThatWasReadAtLoad)
{
    EXPECT_EQ(m_task.Version(), Ok(u""));
    static_cast<void>(Data(m_task));
    EXPECT_EQ(m_task.Version(), Ok(u""));
    LoadGroups(kFileTask);
    const TaskClient loaded = m_file.Task(u"S", u"T");
    EXPECT_EQ(loaded.Version(), Ok(u"17"));
    static_cast<void>(Data(loaded));
    EXPECT_EQ(loaded.Version(), Ok(u"17"));
}

TEST_F(TaskData, WritesEveryFieldWhereItBelongs)
{
    const ComPtr<IPolicyTask> task = Create<IPolicyTask>();
    for (const TextProperty& property : kTextProperties) {
        const Bstr value(std::u16string(u"the ") + property.name);
        ASSERT_EQ((task.Get()->*property.put)(value.Get()), 0);
    }
    ASSERT_EQ(task->put_Priority(-5), 0);
    std::string expected =
        R"(<TaskData><TaskGroup Path="0_4" TaskID="the TaskID" DisplayName="the DisplayName" TaskType="the TaskType" )"
        R"(SoftwareID="the SoftwareID" CreatorID="the CreatorID" Platforms="the PlatformsSupported" TaskPriority="-5" )"
        R"(TaskVersion="20260102030405"><Task TaskVersion="20260102030405" PathID="0_4">)"
        R"(<Section name="Task"><Setting name="TaskID">the TaskID</Setting>)"
        R"(<Setting name="TaskName">the DisplayName</Setting><Setting name="TaskType">the TaskType</Setting>)"
        R"(<Setting name="Platforms">the PlatformsSupported</Setting><Setting name="TaskPriority">-5</Setting></Section>)"
        R"(<Section name="General"><Setting name="TaskType">the TaskType</Setting>)"
        R"(<Setting name="wTaskType">the TaskType</Setting></Section></Task></TaskGroup></TaskData>)";
    EXPECT_EQ(Data(TaskClient(task)), expected);
}

TEST_F(TaskData, WritesThePriorityAsSignedDecimal)
{
    const std::pair<LONG, const char*> rows[] = {
        {-5, "-5"}, {0, "0"}, {INT32_MAX, "2147483647"}, {INT32_MIN, "-2147483648"}};
    for (const auto& [priority, text] : rows) {
        ASSERT_EQ(m_task.Object()->put_Priority(priority), 0);
        const std::string data = Data(m_task);
        EXPECT_NE(data.find(std::string(" TaskPriority=\"") + text + "\""), std::string::npos) << data;
        EXPECT_NE(data.find(std::string("<Setting name=\"TaskPriority\">") + text + "<"), std::string::npos) << data;
    }
}

TEST_F(TaskData, OfATaskFromAFileKeepsTheTasksOwnPartsUnchanged)
{
    LoadGroups(kFileTask);
    const std::string data = Data(m_file.Task(u"S", u"T"));
    EXPECT_EQ(data.rfind("<TaskData><TaskGroup Path=\"0_4\" TaskID=\"T\" DisplayName=\"old\" TaskType=\"invalid\" "
                         "SoftwareID=\"S\" CreatorID=\"invalid\" Platforms=\"invalid\" TaskPriority=\"4\" "
                         "TaskVersion=\"20260102030405\"><Task TaskVersion=\"20260102030405\" more='kept' "
                         "PathID=\"0_4\">\n    <!-- kept -->\n",
                         0),
              0U)
        << data;
    EXPECT_EQ(data.find("own="), std::string::npos) << data;
    EXPECT_EQ(Difference("    <Section name=\"Task\">\n"
                         "      <Setting name=\"TaskName\">old</Setting>\n"
                         "    </Section>\n"
                         "    <Section name=\"Own\">\n"
                         "      <Setting name=\"x\">1</Setting>\n"
                         "    </Section>\n",
                         data.substr(data.find("    <Section"), data.find("  </Task>") - data.find("    <Section"))),
              "+       <Setting name=\"TaskID\">T</Setting>\n"
              "+       <Setting name=\"TaskType\">invalid</Setting>\n"
              "+       <Setting name=\"Platforms\">invalid</Setting>\n"
              "+       <Setting name=\"TaskPriority\">4</Setting>\n"
              "+     <Section name=\"General\">\n"
              "+       <Setting name=\"TaskType\">invalid</Setting>\n"
              "+       <Setting name=\"wTaskType\">invalid</Setting>\n"
              "+     </Section>\n");
}

TEST_F(TaskData, MakesTheSettingsThatItWroteReadableAndAddsNoneTwice)
{
    ASSERT_EQ(m_task.PutDisplayName(u"name"), 0);
    const std::string first = Data(m_task);
    EXPECT_EQ(m_task.Get(u"Task", u"TaskName"), Ok(u"name"));
    EXPECT_EQ(m_task.Get(u"General", u"wTaskType"), Ok(u"invalid"));
    ASSERT_EQ(m_task.Put(u"Task", u"TaskName", u"other"), 0);
    EXPECT_EQ(Data(m_task), first);
    ASSERT_EQ(m_task.Put(u"General", u"own", u"1"), 0);
    EXPECT_EQ(m_task.RemoveSection(u"General"), 0);
    EXPECT_EQ(Data(m_task), first);
}

TEST_F(TaskData, WithAFieldThatXmlCannotHoldIsRefusedAndChangesNothing)
{
    using namespace std::literals;
    ASSERT_EQ(m_task.Put(u"Own", u"x", u"1"), 0);
    const std::string before = Data(m_task);
    const ComPtr<IPolicyTask> task(m_task.Object());
    for (const TextProperty& property : kTextProperties) {
        for (const std::u16string_view bad : {u"a\0b"sv, u"\uFFFE"sv, u"\u001F"sv}) {
            const Bstr text(bad);
            const Bstr good(u"invalid");
            ASSERT_EQ((task.Get()->*property.put)(text.Get()), 0);
            OutText slot;
            EXPECT_EQ(task->get_TaskData(slot.Slot()), result::Unexpected) << Utf8(property.name);
            EXPECT_TRUE(slot.Untouched()) << Utf8(property.name);
            EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::Unexpected));
            EXPECT_EQ(MemberCall(task.Get(), u"TaskData").Get().code, result::Unexpected) << Utf8(property.name);
            ASSERT_EQ((task.Get()->*property.put)(good.Get()), 0);
            EXPECT_EQ(Data(m_task), before) << Utf8(property.name);
        }
    }
}

TEST_F(TaskData, ReplacesTheTextThatTheSlotHolds)
{
    OutText slot;
    ASSERT_EQ(m_task.Object()->get_TaskData(slot.Slot()), 0);
    EXPECT_EQ(Utf8(slot.Text()), kNewTask);
    EXPECT_EQ(Utf8(MemberCall(m_task.Object(), u"TaskData").Get().text), kNewTask);
}

}  // namespace zupm::test
