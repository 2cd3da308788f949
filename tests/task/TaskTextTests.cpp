// Tasks bound from XML text: what AddTask makes of the text that an object answers.
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

class TaskText : public TaskTest {
protected:
    /// Adds an object that answers `data`, as task S/T, to a file without tasks.
    HRESULT Add(std::u16string_view data)
    {
        LoadGroups("");
        ForeignTask task({0, u"S"}, {0, u"T"}, {0, std::u16string(data)});
        static_cast<void>(m_log.Take());
        const HRESULT code = m_file.Object()->AddTask(&task, 1);
        EXPECT_EQ(task.References(), 0U);
        return code;
    }
    /// The value of an attribute of the file's one TaskGroup.
    [[nodiscard]] std::string Attribute(const std::string& name) const
    {
        const std::string buffer = Utf8(m_file.Buffer().value());
        const std::size_t group = buffer.find("<TaskGroup");
        const std::size_t start = buffer.find(" " + name + "=\"", group) + name.size() + 3;
        return buffer.substr(start, buffer.find('"', start) - start);
    }
};

using LogLines = std::vector<LogLine>;

struct FoundRow {
    const char* label;
    const char16_t* text;
    const char* taskId;
};

constexpr FoundRow kFound[] = {
    {"the usual form", u"<TaskData><TaskGroup TaskID='1'><Task/></TaskGroup></TaskData>", "1"},
    {"any root name", u"<x><TaskGroup TaskID='1'><Task/></TaskGroup></x>", "1"},
    {"a group without a task is passed over",
     u"<x><TaskGroup TaskID='1'/><TaskGroup TaskID='2'><Task/></TaskGroup></x>", "2"},
    {"the first group with a task counts",
     u"<x><TaskGroup TaskID='1'><Task/></TaskGroup><TaskGroup TaskID='2'><Task/></TaskGroup></x>", "1"},
    {"elements of other names are passed over",
     u"<x><taskGroup TaskID='1'><Task/></taskGroup><TaskGroup TaskID='2'><task/></TaskGroup>"
     u"<TaskGroup TaskID='3'><x/><Task/></TaskGroup></x>",
     "3"},
    {"an empty ID is an ID", u"<x><TaskGroup TaskID=''><Task/></TaskGroup></x>", ""},
};

constexpr const char16_t* kNotFound[] = {
    u"<TaskData/>",
    u"<TaskData><TaskGroup/></TaskData>",
    u"<TaskData><Task/></TaskData>",
    u"<TaskGroup><Task/></TaskGroup>",
    u"<TaskData><TaskGroup><x><Task/></x></TaskGroup></TaskData>",
};

}  // namespace

TEST_F(TaskText, TheFirstTaskOfTheFirstGroupThatHasOneIsUsed)
{
    for (const FoundRow& row : kFound) {
        EXPECT_EQ(Add(row.text), 0) << row.label;
        EXPECT_EQ(Attribute("TaskID"), row.taskId) << row.label;
    }
}

TEST_F(TaskText, OnlyTheFirstTaskOfAGroupIsTaken)
{
    ASSERT_EQ(Add(u"<x><TaskGroup TaskID='1'><Task n='1'/><Task n='2'/></TaskGroup></x>"), 0);
    const std::string changes = Changes();
    EXPECT_NE(changes.find("n='1'"), std::string::npos) << changes;
    EXPECT_EQ(changes.find("n='2'"), std::string::npos) << changes;
}

TEST_F(TaskText, WithoutAnyAttributeGivesTheDefaults)
{
    ASSERT_EQ(Add(u"<TaskData><TaskGroup><Task/></TaskGroup></TaskData>"), 0);
    for (const char* name : {"TaskID", "DisplayName", "SoftwareID", "Platforms", "CreatorID", "TaskType"}) {
        EXPECT_EQ(Attribute(name), "invalid") << name;
    }
    EXPECT_EQ(Attribute("TaskPriority"), "0");
    EXPECT_EQ(Attribute("Path"), "0_4");
    EXPECT_EQ(Attribute("TaskVersion"), "20260102030405");
    EXPECT_EQ(m_file.FindTask(u"invalid", u"invalid"), 0);
    EXPECT_EQ(m_file.FindTask(u"S", u"T"), result::TaskNotFound);
}

TEST_F(TaskText, WithoutATaskIsRefused)
{
    for (const char16_t* text : kNotFound) {
        EXPECT_EQ(Add(text), result::ElementMissing) << Utf8(text);
        EXPECT_EQ(m_log.Take(), LogLines{}) << Utf8(text);
        EXPECT_EQ(m_file.VersionTask(), Ok(u"0")) << Utf8(text);
    }
}

TEST_F(TaskText, ThatIsMalformedIsRefusedWithTwoLogLines)
{
    EXPECT_EQ(Add(u"<TaskData>\n\n <TaskGroup></TaskData>"), result::SyntaxError);
    const std::vector<LogLine> lines = m_log.Take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].level, 7);
    EXPECT_EQ(lines[0].subsystem, 0x800U);
    EXPECT_EQ(lines[0].text.rfind("CTaskData::Initialize() - XML parsing exception occurred - syntax error at line(3), "
                                  "column(",
                                  0),
              0U)
        << lines[0].text;
    EXPECT_EQ(lines[1], (LogLine{7, "CTaskData::Initialize() - Initalize policy file failed"}));
}

TEST_F(TaskText, OfAnObjectThatFailsEndsTheAddWithItsCode)
{
    LoadGroups("");
    ForeignTask noData({}, {}, {result::AllocationFailed, {}});
    EXPECT_EQ(m_file.Object()->AddTask(&noData, 1), result::AllocationFailed);
    EXPECT_EQ(noData.References(), 0U);
    ForeignTask noId({}, {-77, {}}, {result::AllocationFailed, {}});
    EXPECT_EQ(m_file.Object()->AddTask(&noId, 1), -77);
    EXPECT_EQ(noId.References(), 0U);
}

}  // namespace zupm::test
