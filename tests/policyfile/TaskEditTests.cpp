// AddTask, RemoveTask, GetTask, CreateTask.

#include "PolicyFileTest.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><TaskRoot version='7'><TaskGroup SoftwareID='A' TaskID='1' TaskVersion='7'><Task TaskVersion='7'>"
    "<Section name='S'><Setting name='N'>a</Setting></Section></Task></TaskGroup>"
    "<TaskGroup SoftwareID='A' TaskID='2' TaskVersion='6'><Task/></TaskGroup></TaskRoot><TaskRoot/></R>";

class TaskEdits : public PolicyFileTest {
protected:
    [[nodiscard]] std::u16string Buffer() const { return m_file.Buffer().value_or(u""); }
};

}  // namespace

TEST_F(TaskEdits, GetTaskOfAnUnknownPair_LeavesTheSlotAsItWas)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const TaskClient held = m_file.Task(u"A", u"1");
    IUnknown* slot = held.Object();
    EXPECT_EQ(m_file.Object()->GetTask(Bstr(u"A").Get(), Bstr(u"3").Get(), &slot), result::TaskNotFound);
    EXPECT_EQ(m_file.Object()->GetTask(Bstr(u"B").Get(), Bstr(u"1").Get(), &slot), result::TaskNotFound);
    EXPECT_EQ(m_file.Object()->GetTask(nullptr, nullptr, &slot), result::TaskNotFound);
    EXPECT_EQ(slot, held.Object());
}

TEST_F(TaskEdits, GetTask_HandsOutTheGroupsIdentityAndTheTasksSettings)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const TaskClient task = m_file.Task(u"A", u"1");
    EXPECT_EQ(task.SoftwareID(), (TextResult{0, u"A"}));
    EXPECT_EQ(task.TaskID(), (TextResult{0, u"1"}));
    EXPECT_EQ(task.DisplayName(), (TextResult{0, u"invalid"}));
    EXPECT_EQ(task.Version(), (TextResult{0, u"7"}));
    EXPECT_EQ(task.Get(u"S", u"N"), (TextResult{0, u"a"}));
}

TEST_F(TaskEdits, ChangeThroughTheObject_ReachesTheDocumentOnlyWithAddTask)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const std::u16string before = Buffer();
    TaskClient task = m_file.Task(u"A", u"1");
    ASSERT_EQ(task.Put(u"S", u"N", u"changed"), 0);
    ASSERT_EQ(task.PutDisplayName(u"name"), 0);
    EXPECT_EQ(Buffer(), before);
    ASSERT_EQ(m_file.Add(task), 0);
    EXPECT_EQ(m_file.Task(u"A", u"1").Get(u"S", u"N"), (TextResult{0, u"changed"}));
    EXPECT_EQ(m_file.Task(u"A", u"1").DisplayName(), (TextResult{0, u"name"}));
}

TEST_F(TaskEdits, OverwriteFlag_IsNeverLookedAt)
{
    for (const LONG overwrite : {0, 1, -1}) {
        ASSERT_EQ(LoadText(kFile), 0);
        TaskClient task = m_file.Task(u"A", u"1");
        ASSERT_EQ(task.Put(u"S", u"N", u"new"), 0);
        EXPECT_EQ(m_file.Add(task, overwrite), 0) << overwrite;
        EXPECT_EQ(m_file.Task(u"A", u"1").Get(u"S", u"N"), (TextResult{0, u"new"})) << overwrite;
        EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"A/2"s})) << overwrite;
    }
}

TEST_F(TaskEdits, NewTask_GetsAGroupOfItsOwnAtTheEndOfTheFirstTaskRoot)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), 0);
    const std::string text = Utf8(Buffer());
    const std::size_t group = text.find("</TaskGroup><TaskGroup Path=\"0_4\" TaskID=\"9\"");
    ASSERT_NE(group, std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("</Task></TaskGroup></TaskRoot><TaskRoot/></R>")) << text;
    EXPECT_EQ(text.substr(0, group), std::string(kFile).substr(0, group)) << "what precedes the group is untouched";
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"A/2"s, u"B/9"s}));
}

TEST_F(TaskEdits, AddedTask_HasItsPathsAndItsStampOnGroupAndTask)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText("<R><TaskRoot/></R>"), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), 0);
    const std::string stamp(kStamp);
    const auto setting = [](const char* name, const char* value) {
        return "<Setting name=\"" + std::string(name) + "\">" + value + "</Setting>";
    };
    EXPECT_EQ(Utf8(Buffer()),
              "<R><TaskRoot><TaskGroup Path=\"0_4\" TaskID=\"9\" DisplayName=\"invalid\" TaskType=\"invalid\" "
              "SoftwareID=\"B\" CreatorID=\"invalid\" Platforms=\"invalid\" TaskPriority=\"0\" TaskVersion=\"" +
                  stamp + "\"><Task TaskVersion=\"" + stamp + "\" PathID=\"0_4\"><Section name=\"Task\">" +
                  setting("TaskID", "9") + setting("TaskName", "invalid") + setting("TaskType", "invalid") +
                  setting("Platforms", "invalid") + setting("TaskPriority", "0") +
                  "</Section><Section name=\"General\">" + setting("TaskType", "invalid") +
                  setting("wTaskType", "invalid") + "</Section></Task></TaskGroup></TaskRoot></R>");
}

TEST_F(TaskEdits, TaskVersion_KeepsTheLargerValue)
{
    const FixedClock clock;
    const std::string stamp(kStamp);
    const std::pair<std::string, std::string> rows[] = {
        {"7", stamp}, {"99999999999999", "99999999999999"}, {"-1", "18446744073709551615"}, {"0", stamp}};
    for (const auto& [before, after] : rows) {
        ASSERT_EQ(LoadText("<R><TaskRoot version='" + before + "'/></R>"), 0);
        ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), 0);
        EXPECT_EQ(Utf8(m_file.VersionTask().text.value()), after) << before;
    }
}

TEST_F(TaskEdits, RemovedTask_TakesItsWholeGroupWithEveryOtherTaskInIt)
{
    ASSERT_EQ(LoadText("<R><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/><Task/></TaskGroup>"
                       "<TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></TaskRoot></R>"),
              0);
    ASSERT_EQ(m_file.RemoveTask(u"A", u"1"), 0);
    EXPECT_EQ(Utf8(Buffer()), "<R><TaskRoot><TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></TaskRoot></R>");
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/2"s}));
    EXPECT_EQ(m_file.RemoveTask(u"A", u"1"), result::TaskNotFound);
}

TEST_F(TaskEdits, ReplacedTaskOfAGroupWithTwo_LeavesOneTaskInTheGroup)
{
    ASSERT_EQ(LoadText("<R><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/><Task/></TaskGroup></TaskRoot></R>"),
              0);
    ASSERT_EQ(m_file.Add(m_file.Task(u"A", u"1")), 0);
    const std::string text = Utf8(Buffer());
    EXPECT_EQ(text.find("<Task "), text.rfind("<Task "));
    EXPECT_EQ(text.find("<Task/>"), std::string::npos);
}

TEST_F(TaskEdits, ReplacedTask_LeavesNothingElseInItsGroup)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText("<R><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'>before<!-- c --><Other/><Task PathID='7' "
                       "TaskVersion='3'/>after<![CDATA[x]]><?p q?></TaskGroup></TaskRoot></R>"),
              0);
    ASSERT_EQ(m_file.Add(m_file.Task(u"A", u"1")), 0);
    const std::string text = Utf8(Buffer());
    const std::size_t start = text.find('>', text.find("<TaskGroup ")) + 1;
    const std::string inside = text.substr(start, text.find("</TaskGroup>") - start);
    EXPECT_TRUE(inside.starts_with("<Task PathID='0_4' TaskVersion='" + std::string(kStamp) + "'><Section ")) << text;
    EXPECT_TRUE(inside.ends_with("</Section></Task>")) << text;
}

TEST_F(TaskEdits, EditsOfTasks_CheckReadOnlyThenNullThenLoadedThenTheObject)
{
    const ProductClient product = m_file.NewPolicy(u"A");
    const TaskClient task = m_file.NewTask(u"A", u"1");
    IPolicyFile* const file = m_file.Object();

    EXPECT_EQ(file->AddTask(nullptr, 0), result::ReadOnly);
    EXPECT_EQ(file->RemoveTask(nullptr, nullptr), result::ReadOnly);

    ASSERT_EQ(LoadText("<R>"), result::SyntaxError);
    EXPECT_EQ(file->AddTask(nullptr, 0), result::BadArgument);
    EXPECT_EQ(file->AddTask(task.Object(), 0), result::NotInitialised);
    EXPECT_EQ(file->AddTask(product.Object(), 0), result::NotInitialised);
    EXPECT_EQ(file->RemoveTask(nullptr, nullptr), result::NotInitialised);

    ASSERT_EQ(LoadText(kFile, 1), 0);
    EXPECT_EQ(file->AddTask(nullptr, 0), result::ReadOnly);
    EXPECT_EQ(m_file.RemoveTask(u"A", u"none"), result::ReadOnly);

    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(file->AddTask(nullptr, 0), result::BadArgument);
    EXPECT_EQ(file->AddTask(product.Object(), 0), result::BadArgument) << "a policy is no task";
    EXPECT_EQ(file->RemoveTask(nullptr, nullptr), result::TaskNotFound);
    EXPECT_EQ(m_file.RemoveTask(u"B", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.RemoveTask(u"A", u"3"), result::TaskNotFound);
    EXPECT_EQ(Utf8(Buffer()), kFile) << "nothing changed";
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0) << "the index was not emptied";
}

TEST_F(TaskEdits, AddOfANewTaskWithoutTaskRoot_FailsWithAMissingElement)
{
    ASSERT_EQ(LoadText("<R><taskroot/></R>"), 0);
    EXPECT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), result::ElementMissing);
    EXPECT_EQ(Utf8(Buffer()), "<R><taskroot/></R>");
}

TEST_F(TaskEdits, FailureAfterTheIndexWasEmptied_LeavesItEmptyUntilAnEditSucceeds)
{
    ASSERT_EQ(LoadText(kFile), 0);
    TaskClient broken = m_file.NewTask(u"A", u"2");
    ASSERT_EQ(broken.PutDisplayName(u"\x01"), 0);
    ASSERT_EQ(m_file.Add(broken), result::Unexpected) << "its TaskData cannot be made";
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.RemoveTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.Tasks().First().code, result::ListEmpty);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"B/9"s})) << "what was taken out of A/2 is not put back";
}

TEST_F(TaskEdits, FailureAfterTheIndexWasEmptied_IsHealedByALoad)
{
    ASSERT_EQ(LoadText(kFile), 0);
    TaskClient broken = m_file.NewTask(u"A", u"2");
    ASSERT_EQ(broken.PutDisplayName(u"\xD800"), 0);
    ASSERT_EQ(m_file.Add(broken), result::Unexpected);
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0);
    EXPECT_EQ(m_file.FindTask(u"A", u"2"), 0);
}

TEST_F(TaskEdits, PolicyIndex_IsNotTouchedByATaskEditThatFails)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/></Policy></PolicyGroup>"
                       "</PolicyRoot></R>"),
              0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), result::ElementMissing);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
}

TEST_F(TaskEdits, CreateTask_GivesAFreshObjectWithoutAnyFile)
{
    ComPtr<IPolicyTask> object;
    ASSERT_EQ(m_file.Object()->CreateTask(object.Put()), 0);
    EXPECT_EQ(TaskClient(object).TaskID(), (TextResult{0, u"invalid"}));
    EXPECT_EQ(TaskClient(object).Version(), (TextResult{0, u""}));
}

}  // namespace zupm::test
