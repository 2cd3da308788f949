// AddPolicy and AddTask of objects that are not the component's own, and how the adds fail when those do.

#include "PolicyFileTest.h"
#include "tests/support/ForeignObjects.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy PathID='p' PolicyVersion='5'><Product SoftwareID='A'/><Product "
    "SoftwareID='B'/>"
    "</Policy></PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup>"
    "<TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></TaskRoot></R>";

constexpr HRESULT kForeignCode = static_cast<HRESULT>(0x80004001u);

class ForeignObjects : public PolicyFileTest {
protected:
    void SetUp() override { ASSERT_EQ(LoadText(kFile), 0); }

    [[nodiscard]] std::string Buffer() const { return Utf8(m_file.Buffer().value_or(u"")); }
};

/// Data that an add cannot use, and its result.
struct BadDataRow {
    const char* label;
    Answer data;
    HRESULT code;
};

const BadDataRow kBadPolicies[] = {
    {"the getter fails", {kForeignCode, u""}, kForeignCode},
    {"not well-formed", {0, u"<PolicyData><Policy>"}, result::SyntaxError},
    {"empty", {0, u""}, result::SyntaxError},
    {"no Policy", {0, u"<PolicyData><policy><Product SoftwareID='B'/></policy></PolicyData>"}, result::ElementMissing},
    {"no Product", {0, u"<PolicyData><Policy><X SoftwareID='B'/></Policy></PolicyData>"}, result::ElementMissing},
    {"no software ID", {0, u"<PolicyData><Policy><Product/></Policy></PolicyData>"}, result::ElementMissing},
};

const BadDataRow kBadTasks[] = {
    {"the getter fails", {kForeignCode, u""}, kForeignCode},
    {"not well-formed", {0, u"<TaskData><TaskGroup>"}, result::SyntaxError},
    {"empty", {0, u""}, result::SyntaxError},
    {"no TaskGroup", {0, u"<TaskData><Task/></TaskData>"}, result::ElementMissing},
    {"no Task", {0, u"<TaskData><TaskGroup TaskID='2'/></TaskData>"}, result::ElementMissing},
};

}  // namespace

TEST_F(ForeignObjects, ForeignPolicy_IsAddedLikeAnOwnOne)
{
    ForeignProduct product({0, u"B"}, {0,
                                       u"<X><Policy><Product/><Product SoftwareID='B'><Section name='S'>"
                                       u"<Setting name='N'>v</Setting></Section></Product></Policy></X>"});
    ASSERT_EQ(m_file.Object()->AddPolicy(&product, 0), 0);
    EXPECT_EQ(m_file.Policy(u"B").Get(u"S", u"N"), (TextResult{0, u"v"}));
    EXPECT_EQ(product.References(), 0U) << "nothing holds it any more";
}

TEST_F(ForeignObjects, PolicyWhoseDataNamesAnotherID_ReplacesTheOneThatItsPropertyNames)
{
    ForeignProduct product({0, u"B"}, {0, u"<X><Policy><Product SoftwareID='Z'/></Policy></X>"});
    ASSERT_EQ(m_file.Object()->AddPolicy(&product, 0), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindPolicy(u"Z"), 0);
}

TEST_F(ForeignObjects, FailingIDOfAPolicy_EndsTheAddBeforeAnythingChanges)
{
    ForeignProduct product({kForeignCode, u""}, {0, u"<X/>"});
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), kForeignCode);
    EXPECT_EQ(Buffer(), kFile);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
    EXPECT_EQ(product.References(), 0U);
}

TEST_F(ForeignObjects, PolicyDataThatCannotBeUsed_LeavesTheOldOneDeletedAndTheIndexEmpty)
{
    for (const BadDataRow& row : kBadPolicies) {
        ASSERT_EQ(LoadText(kFile), 0) << row.label;
        ForeignProduct product({0, u"B"}, row.data);
        EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), row.code) << row.label;
        EXPECT_EQ(product.References(), 0U) << row.label;
        EXPECT_EQ(Buffer(), ReplaceOnce(kFile, "<Product SoftwareID='B'/>", "")) << row.label;
        EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound) << row.label;
        EXPECT_EQ(m_file.RemovePolicy(u"A"), result::PolicyNotFound) << row.label;
        EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0) << row.label << ": the tasks are not concerned";
        ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"C")), 0) << row.label;
        EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << row.label << ": an edit that succeeds rebuilds the index";
        EXPECT_EQ(m_file.FindPolicy(u"B"), result::PolicyNotFound) << row.label;
    }
}

TEST_F(ForeignObjects, NewPolicyWhoseDataCannotBeUsed_LeavesTheDocumentAsItWas)
{
    ForeignProduct product({0, u"C"}, {0, u"<"});
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::SyntaxError);
    EXPECT_EQ(Buffer(), kFile) << "its slot was made and taken out again";
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << "a load rebuilds the index";
}

TEST_F(ForeignObjects, PolicyDataThatCannotBeParsed_LogsWhereItFails)
{
    ForeignProduct product({0, u"B"}, {0, u"<X>\n<a>\n    </b>"});
    LogCapture log;
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::SyntaxError);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{7,
                                               "CPolicyData::Initialize() - XML parsing exception occurred - "
                                               "syntax error at line(3), column(7)"},
                                       LogLine{7, "CPolicyData::Initialize() - Initalize policy file failed"}}));
}

TEST_F(ForeignObjects, ForeignTask_IsAddedLikeAnOwnOne)
{
    ForeignTask task({0, u"A"}, {0, u"2"},
                     {0,
                      u"<X><TaskGroup/><TaskGroup SoftwareID='A' TaskID='2'><Task><Section name='S'>"
                      u"<Setting name='N'>v</Setting></Section></Task></TaskGroup></X>"});
    ASSERT_EQ(m_file.Object()->AddTask(&task, 0), 0);
    EXPECT_EQ(m_file.Task(u"A", u"2").Get(u"S", u"N"), (TextResult{0, u"v"}));
    EXPECT_EQ(task.References(), 0U);
}

TEST_F(ForeignObjects, FailingIDOfATask_EndsTheAddBeforeAnythingChanges)
{
    ForeignTask noSoftware({kForeignCode, u""}, {0, u"2"}, {0, u"<X/>"});
    EXPECT_EQ(m_file.Object()->AddTask(&noSoftware, 0), kForeignCode);
    ForeignTask noTask({0, u"A"}, {kForeignCode, u""}, {0, u"<X/>"});
    EXPECT_EQ(m_file.Object()->AddTask(&noTask, 0), kForeignCode);
    EXPECT_EQ(Buffer(), kFile);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0);
}

TEST_F(ForeignObjects, IDsThatXMLCannotHold_EndTheAddBeforeAnythingChanges)
{
    const Answer productData{0, u"<X><Policy><Product SoftwareID='A'/></Policy></X>"};
    const Answer taskData{0, u"<X><TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></X>"};
    for (const std::u16string& id : {u"\x01"s, u"A\xD800"s, u"\xFFFF"s}) {
        ForeignProduct product({0, id}, productData);
        ForeignTask badSoftware({0, id}, {0, u"2"}, taskData);
        ForeignTask badTask({0, u"A"}, {0, id}, taskData);
        // Every object that goes takes the resource module along; a new one brings it back for the log lines.
        const ComPtr<ITaskInfo> any = Create<ITaskInfo>();
        LogCapture log;
        EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::Unexpected);
        EXPECT_EQ(log.Take(), (std::vector{LogLine{1, "Unexpected exception in CPolicyFile::AddPolicy()"}}));
        for (ForeignTask* const task : {&badSoftware, &badTask}) {
            EXPECT_EQ(m_file.Object()->AddTask(task, 0), result::Unexpected);
            EXPECT_EQ(log.Take(), (std::vector{LogLine{1, "Unexpected exception in CPolicyFile::AddTask()"}}));
            EXPECT_EQ(task->References(), 0U);
        }
        EXPECT_EQ(product.References(), 0U);
        EXPECT_EQ(Buffer(), kFile);
        EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << "the index was not emptied";
        EXPECT_EQ(m_file.FindTask(u"A", u"1"), 0);
    }
}

TEST_F(ForeignObjects, TaskDataThatCannotBeUsed_LeavesTheOldOneDeletedAndTheIndexEmpty)
{
    for (const BadDataRow& row : kBadTasks) {
        ASSERT_EQ(LoadText(kFile), 0) << row.label;
        ForeignTask task({0, u"A"}, {0, u"2"}, row.data);
        EXPECT_EQ(m_file.Object()->AddTask(&task, 0), row.code) << row.label;
        EXPECT_EQ(task.References(), 0U) << row.label;
        EXPECT_EQ(Buffer(), ReplaceOnce(kFile, "TaskID='2'><Task/>", "TaskID='2'>")) << row.label;
        EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound) << row.label;
        EXPECT_EQ(m_file.Tasks().First().code, result::ListEmpty) << row.label;
        EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << row.label << ": the policies are not concerned";
        ASSERT_EQ(m_file.Add(m_file.NewTask(u"B", u"9")), 0) << row.label;
        EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"B/9"s})) << row.label;
    }
}

TEST_F(ForeignObjects, NewTaskWhoseDataCannotBeUsed_LeavesItsEmptyGroup)
{
    ForeignTask task({0, u"B"}, {0, u"9"}, {0, u"<"});
    EXPECT_EQ(m_file.Object()->AddTask(&task, 0), result::SyntaxError);
    EXPECT_NE(Buffer().find("</TaskGroup><TaskGroup></TaskGroup></TaskRoot>"), std::string::npos) << Buffer();
}

}  // namespace zupm::test
