// Every member of the policy file, called by name as scripts call it.

#include "PolicyFileTest.h"
#include "tests/support/MemberCall.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot version='12' AssignmentList='all'><PolicyGroup Path='x'><Policy><Product SoftwareID='A'/></Policy>"
    "</PolicyGroup></PolicyRoot><TaskRoot version='7'><TaskGroup SoftwareID='A' TaskID='1' TaskVersion='7'><Task/>"
    "</TaskGroup></TaskRoot></R>";

class PolicyFileByName : public PolicyFileTest {
protected:
    [[nodiscard]] MemberCall Member(std::u16string_view name) const { return MemberCall(m_file.Object(), name); }
};

}  // namespace

TEST_F(PolicyFileByName, LoadAndWrite_Work)
{
    const std::u16string path = m_folder.Write(u"policy.xml", kFile);
    EXPECT_EQ(Member(u"InitializeFile").In(path).In(LONG{0}).Call().code, 0);
    EXPECT_EQ(Member(u"WriteFile").In(m_folder.Path(u"out.xml")).In(LONG{1}).Call().code, 0);
    EXPECT_EQ(m_folder.Read(u"out.xml"), kFile);
}

TEST_F(PolicyFileByName, FailingMember_RaisesItsCodeWithItsSentence)
{
    const CallOutcome outcome = Member(u"RemovePolicy").In(u"A").Call();
    EXPECT_EQ(outcome.invoked, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, result::ReadOnly);
    EXPECT_EQ(outcome.description, result::SentenceFor(result::ReadOnly));
}

TEST_F(PolicyFileByName, SyntaxError_RaisesFileLineColumnAndReason)
{
    const std::u16string path = m_folder.Write(u"bad.xml", "<R>\n<a>\n    </b>");
    const CallOutcome outcome = Member(u"InitializeFile").In(path).In(LONG{0}).Call();
    EXPECT_EQ(outcome.code, result::SyntaxError);
    EXPECT_TRUE(outcome.description.starts_with(path + u":3:7: ")) << Utf8(outcome.description);
}

TEST_F(PolicyFileByName, Properties_GiveTheirTexts)
{
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(Member(u"VersionTask").Get().text, u"7");
    EXPECT_EQ(Member(u"VersionPolicy").Get().text, u"12");
    EXPECT_EQ(Member(u"PolicyAssignmentList").Get().text, u"all");
}

TEST_F(PolicyFileByName, Buffer_IsReturnedAsValueAndThroughASlot)
{
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(Utf8(Member(u"WriteFileBuffer").ForResult().text), kFile);
    OutText slot;
    EXPECT_EQ(Member(u"WriteFileBuffer").Out(slot).Call().code, 0);
    EXPECT_EQ(Utf8(slot.Text()), kFile);
}

TEST_F(PolicyFileByName, Objects_AreReturnedAsValues)
{
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_TRUE(Member(u"GetPolicy").In(u"A").ForResult().object.Query<IPolicyProduct>());
    EXPECT_TRUE(Member(u"GetTask").In(u"A").In(u"1").ForResult().object.Query<IPolicyTask>());
    EXPECT_TRUE(Member(u"GetTaskInfo").ForResult().object.Query<ITaskInfo>());
    EXPECT_TRUE(Member(u"CreatePolicy").ForResult().object.Query<IPolicyProduct>());
    EXPECT_TRUE(Member(u"CreateTask").ForResult().object.Query<IPolicyTask>());
    EXPECT_EQ(Member(u"GetPolicy").In(u"B").ForResult().code, result::PolicyNotFound);
    EXPECT_EQ(Member(u"GetTask").In(u"A").In(u"2").ForResult().code, result::TaskNotFound);
}

TEST_F(PolicyFileByName, Objects_AreReturnedThroughSlots)
{
    ASSERT_EQ(LoadText(kFile), 0);
    OutObject<IUnknown> policy;
    EXPECT_EQ(Member(u"GetPolicy").In(u"A").Out(policy).Call().code, 0);
    EXPECT_TRUE(policy.Take().Query<IPolicyProduct>());
    OutObject<IUnknown> task;
    EXPECT_EQ(Member(u"GetTask").In(u"A").In(u"1").Out(task).Call().code, 0);
    EXPECT_TRUE(task.Take().Query<IPolicyTask>());
    OutObject<IUnknown> tasks;
    EXPECT_EQ(Member(u"GetTaskInfo").Out(tasks).Call().code, 0);
    EXPECT_TRUE(tasks.Take().Query<ITaskInfo>());
    OutObject<IPolicyProduct> newPolicy;
    EXPECT_EQ(Member(u"CreatePolicy").Out(newPolicy).Call().code, 0);
    EXPECT_TRUE(newPolicy.Take());
    OutObject<IPolicyTask> newTask;
    EXPECT_EQ(Member(u"CreateTask").Out(newTask).Call().code, 0);
    EXPECT_TRUE(newTask.Take());
}

TEST_F(PolicyFileByName, EditInPlace_IsDoneByNameToo)
{
    const std::u16string path = m_folder.Write(u"policy.xml", kFile);
    EXPECT_EQ(Member(u"HasFileChanged").ForResult().code, result::NotInitialised);
    EXPECT_EQ(Member(u"OpenForEdit").In(path).In(LONG{0}).Call().code, 0);
    const CallOutcome changed = Member(u"HasFileChanged").ForResult();
    EXPECT_EQ(changed.type, VT_I4);
    EXPECT_EQ(changed.number, 0);
    OutNumber slot;
    EXPECT_EQ(Member(u"HasFileChanged").Out(slot).Call().code, 0);
    EXPECT_EQ(slot.Value(), 0);
    EXPECT_EQ(Member(u"RemovePolicy").In(u"A").Call().code, 0);
    EXPECT_EQ(Member(u"RehearseCommit").In(LONG{0}).Call().code, 0);
    EXPECT_EQ(Member(u"CommitEdit").In(LONG{0}).Call().code, 0);
    EXPECT_EQ(m_folder.Read(u"policy.xml").find("<Product"), std::string::npos);
    const CallOutcome ended = Member(u"CommitEdit").In(LONG{0}).Call();
    EXPECT_EQ(ended.invoked, DISP_E_EXCEPTION);
    EXPECT_EQ(ended.code, result::NotInitialised);
    EXPECT_EQ(Member(u"EndEdit").Call().code, 0);
    EXPECT_EQ(Member(u"EndEdit").In(LONG{0}).Call().code, DISP_E_BADPARAMCOUNT);
}

TEST_F(PolicyFileByName, Edits_TakeObjectsAsArguments)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const ProductClient product = m_file.NewPolicy(u"B");
    EXPECT_EQ(Member(u"AddPolicy").In(product.Object()).In(LONG{1}).Call().code, 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
    const TaskClient task = m_file.NewTask(u"B", u"2");
    EXPECT_EQ(Member(u"AddTask").In(task.Object()).In(LONG{1}).Call().code, 0);
    EXPECT_EQ(m_file.FindTask(u"B", u"2"), 0);
    EXPECT_EQ(Member(u"RemovePolicy").In(u"A").Call().code, 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    EXPECT_EQ(Member(u"RemoveTask").In(u"A").In(u"1").Call().code, 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"B/2"s}));
    EXPECT_EQ(Member(u"AddTask").In(static_cast<IUnknown*>(nullptr)).In(LONG{1}).Call().code, result::BadArgument);
    EXPECT_EQ(Member(u"AddTask").In(product.Object()).In(LONG{1}).Call().code, result::BadArgument);
}

}  // namespace zupm::test
