// Tasks that a policy file hands out: which attribute becomes which property.
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

class LoadedTask : public TaskTest {
protected:
    [[nodiscard]] ComPtr<IPolicyTask> Task(std::u16string_view softwareId = u"S", std::u16string_view taskId = u"T")
    {
        return ComPtr<IPolicyTask>(m_file.Task(softwareId, taskId).Object());
    }
    [[nodiscard]] static std::u16string Get(const ComPtr<IPolicyTask>& task, HRESULT (IPolicyTask::*get)(BSTR*))
    {
        OutText slot;
        EXPECT_EQ((task.Get()->*get)(slot.Slot()), 0);
        return slot.Text();
    }
    [[nodiscard]] static LONG Priority(const ComPtr<IPolicyTask>& task)
    {
        OutNumber slot;
        EXPECT_EQ(task->get_Priority(slot.Slot()), 0);
        return slot.Value();
    }
};

struct PriorityRow {
    const char* attribute;
    LONG priority;
};

constexpr PriorityRow kPriorities[] = {
    {"12", 12},
    {"12abc", 12},
    {"abc", 0},
    {"", 0},
    {" -7", -7},
    {"  +8 9", 8},
    {"-", 0},
    {"+-5", 0},
    {"- 5", 0},
    {"0x10", 0},
    {"007", 7},
    {"3.9", 3},
    {"&#9;4", 4},
    {"2147483647", INT32_MAX},
    {"2147483648", INT32_MAX},
    {"-2147483648", INT32_MIN},
    {"-99999999999999999999", INT32_MIN},
    {"\xD9\xA3", 0},
};

}  // namespace

TEST_F(LoadedTask, HasEveryAttributeAsItsProperty)
{
    LoadGroups(
        "<TaskGroup SoftwareID='S' TaskID='T' CreatorID='c' DisplayName='d &amp; \xF0\x9F\x98\x80' Platforms='p' "
        "TaskType='t' TaskPriority='3' TaskVersion='10'><Task TaskVersion='11' PathID='9'/></TaskGroup>\n");
    const ComPtr<IPolicyTask> task = Task();
    EXPECT_EQ(Get(task, &IPolicyTask::get_SoftwareID), u"S");
    EXPECT_EQ(Get(task, &IPolicyTask::get_TaskID), u"T");
    EXPECT_EQ(Get(task, &IPolicyTask::get_CreatorID), u"c");
    EXPECT_EQ(Get(task, &IPolicyTask::get_DisplayName), u"d & \U0001F600");
    EXPECT_EQ(Get(task, &IPolicyTask::get_PlatformsSupported), u"p");
    EXPECT_EQ(Get(task, &IPolicyTask::get_TaskType), u"t");
    EXPECT_EQ(Priority(task), 3);
    EXPECT_EQ(TaskClient(task).Version(), Ok(u"11"));
}

TEST_F(LoadedTask, WithoutAttributesHasTheDefaultsOfANewTask)
{
    LoadGroups(
        "<TaskGroup SoftwareID='S' TaskID='T' PlatformsSupported='p' Version='1' TaskVersion='2'><Task/>"
        "</TaskGroup>\n");
    const ComPtr<IPolicyTask> task = Task();
    EXPECT_EQ(Get(task, &IPolicyTask::get_CreatorID), u"invalid");
    EXPECT_EQ(Get(task, &IPolicyTask::get_DisplayName), u"invalid");
    EXPECT_EQ(Get(task, &IPolicyTask::get_PlatformsSupported), u"invalid");
    EXPECT_EQ(Get(task, &IPolicyTask::get_TaskType), u"invalid");
    EXPECT_EQ(Priority(task), 0);
    EXPECT_EQ(TaskClient(task).Version(), Ok(u""));
}

TEST_F(LoadedTask, WithEmptyAttributesHasEmptyTexts)
{
    LoadGroups("<TaskGroup SoftwareID='' TaskID='' CreatorID=''><Task TaskVersion=''/></TaskGroup>\n");
    const ComPtr<IPolicyTask> task = Task(u"", u"");
    EXPECT_EQ(Get(task, &IPolicyTask::get_SoftwareID), u"");
    EXPECT_EQ(Get(task, &IPolicyTask::get_TaskID), u"");
    EXPECT_EQ(Get(task, &IPolicyTask::get_CreatorID), u"");
}

TEST_F(LoadedTask, ReadsItsPriorityByTheDecimalRule)
{
    for (const PriorityRow& row : kPriorities) {
        LoadGroups("<TaskGroup SoftwareID='S' TaskID='T' TaskPriority='" + std::string(row.attribute) +
                   "'><Task/></TaskGroup>\n");
        EXPECT_EQ(Priority(Task()), row.priority) << row.attribute;
    }
}

TEST_F(LoadedTask, OutlivesTheFileAndLeavesItAlone)
{
    LoadGroups("<TaskGroup SoftwareID='S' TaskID='T'><Task/></TaskGroup>\n");
    TaskClient task = m_file.Task(u"S", u"T");
    ASSERT_EQ(task.Put(u"A", u"x", u"1"), 0);
    ASSERT_EQ(task.Data().code, 0);
    EXPECT_EQ(Changes(), "");
    m_file = PolicyFileClient();
    EXPECT_EQ(task.Get(u"A", u"x"), Ok(u"1"));
}

TEST_F(LoadedTask, RemoveSection_OfAMissingSectionLeavesTheIndexesAsTheyAre)
{
    LoadGroups(
        "<TaskGroup SoftwareID='S' TaskID='T'><Task><Section name='A'/><Section name='A'/></Task></TaskGroup>\n");
    TaskClient task = m_file.Task(u"S", u"T");
    static_cast<void>(m_log.Take());
    EXPECT_EQ(task.RemoveSection(u"None"), result::SectionNotFound);
    EXPECT_EQ(m_log.Take(), std::vector<LogLine>{}) << "a rebuild would log the name that occurs twice";
    EXPECT_EQ(task.RemoveSection(u"A"), 0);
}

TEST_F(LoadedTask, PathIdThatItHas_BecomesTheDefaultOneInItsText)
{
    LoadGroups("<TaskGroup Path='7' SoftwareID='S' TaskID='T'><Task PathID='8' TaskVersion='9'/></TaskGroup>\n");
    EXPECT_NE(
        Utf8(m_file.Task(u"S", u"T").Data().text.value()).find("<Task PathID='0_4' TaskVersion='20260102030405'>"),
        std::string::npos);
    ASSERT_EQ(m_file.Add(m_file.Task(u"S", u"T")), 0);
    const std::string buffer = Utf8(m_file.Buffer().value());
    EXPECT_NE(buffer.find("<TaskGroup Path='0_4' "), std::string::npos) << buffer;
    EXPECT_NE(buffer.find("<Task PathID='0_4' TaskVersion='20260102030405'>"), std::string::npos) << buffer;
}

TEST_F(LoadedTask, HandedBack_FillsItsGroupAndChangesNothingElse)
{
    LoadGroups(
        "<TaskGroup SoftwareID=\"S\" TaskID=\"1\"><Task/></TaskGroup>\n"
        "<TaskGroup own=\"kept\" Path=\"9\" SoftwareID=\"S\" TaskID=\"T\">\n"
        "<Task/>\n"
        "</TaskGroup>\n"
        "<TaskGroup SoftwareID=\"S\" TaskID=\"3\"><Task/></TaskGroup>\n");
    ASSERT_EQ(m_file.Add(m_file.Task(u"S", u"T")), 0);
    const std::string changes = Changes();
    EXPECT_EQ(changes.rfind("- <TaskGroup own=\"kept\" Path=\"9\" SoftwareID=\"S\" TaskID=\"T\">\n", 0), 0U) << changes;
    EXPECT_NE(
        changes.find("+ <TaskGroup own=\"kept\" Path=\"0_4\" SoftwareID=\"S\" TaskID=\"T\" DisplayName=\"invalid\""),
        std::string::npos)
        << changes;
    EXPECT_NE(changes.find("<Task TaskVersion=\"20260102030405\" PathID=\"0_4\">"), std::string::npos) << changes;
    EXPECT_EQ(changes.find("TaskID=\"1\""), std::string::npos) << changes;
    EXPECT_EQ(changes.find("TaskID=\"3\""), std::string::npos) << changes;
    EXPECT_EQ(m_file.VersionTask(), Ok(u"20260102030405"));
}

TEST_F(LoadedTask, GetTask_OfAnUnknownPairLeavesTheSlotAlone)
{
    LoadGroups("<TaskGroup SoftwareID='S' TaskID='T'><Task/></TaskGroup>\n");
    const std::pair<const char16_t*, const char16_t*> rows[] = {{u"S", u"t"}, {u"s", u"T"}, {u"T", u"S"}, {u"", u""}};
    for (const auto& [softwareId, taskId] : rows) {
        OutObject<IUnknown> slot;
        const Bstr software(softwareId);
        const Bstr id(taskId);
        EXPECT_EQ(m_file.Object()->GetTask(software.Get(), id.Get(), slot.Slot()), result::TaskNotFound);
        EXPECT_TRUE(slot.Untouched());
        EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::TaskNotFound));
    }
}

}  // namespace zupm::test
