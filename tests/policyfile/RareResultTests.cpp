// Results that no file and no client leads to: derived classes cause them.

#include <stdexcept>

#include "PolicyFileTest.h"
#include "com/ObjectForms.h"
#include "com/PlatformError.h"
#include "policyfile/CPolicyFile.h"
#include "policyfile/CTaskInfo.h"
#include "tests/support/ComponentHost.h"
#include "tests/support/Names.h"
#include "zuPolicyManager/Owners.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy PathID='p'><Product SoftwareID='A'/><Product SoftwareID='B'/></Policy>"
    "</PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></TaskRoot></R>";

/// A policy file whose task enumerator cannot be made, and whose task index has a software ID without a map.
class OddPolicyFile : public CPolicyFile {
public:
    std::function<void()> failHandOut = [] {};

    void LoseMapOf(const std::u16string& softwareId)
    {
        ChangeData([&](CPolicyFileData& data) { data.Tasks().Insert(softwareId, [] { return nullptr; }); });
    }

    void EmptyMapOf(const std::u16string& softwareId)
    {
        ChangeData([&](CPolicyFileData& data) {
            data.Tasks().Insert(softwareId, [] { return std::make_unique<CPolicyFileData::TaskMap>(); });
        });
    }

protected:
    ~OddPolicyFile() = default;

private:
    void BeforeTaskInfo() override { failHandOut(); }
};

/// An enumerator with a record, a place where none is, and another record.
class HollowTaskInfo : public CTaskInfo {
public:
    void Fill()
    {
        EXPECT_EQ(Append(u"A", u"1"), 0);
        AppendRecord(std::nullopt);
        EXPECT_EQ(Append(u"B", u"2"), 0);
    }

protected:
    ~HollowTaskInfo() = default;
};

class RareResults : public PolicyFileTest {
protected:
    void SetUp() override
    {
        ASSERT_EQ(CreatePlain(m_odd), 0);
        ASSERT_EQ(m_odd->InitializeFile(Bstr(m_folder.Write(u"odd.xml", kFile)).Get(), 0), 0);
    }

    /// GetTaskInfo into a slot that must be null afterwards.
    [[nodiscard]] HRESULT GetTaskInfo()
    {
        OutObject<IUnknown> slot;
        const HRESULT code = m_odd->GetTaskInfo(slot.Slot());
        EXPECT_TRUE(slot.IsNull());
        return code;
    }

    zupm::ComPtr<OddPolicyFile> m_odd;
};

}  // namespace

TEST_F(RareResults, PlatformErrorWhileAnEnumeratorIsMade_GivesItsCodeAndTheLineOfThreeArguments)
{
    m_odd->failHandOut = [] { throw PlatformError(static_cast<result::Code>(0x8007000Eu), u"no storage"); };
    LogCapture log;
    EXPECT_EQ(GetTaskInfo(), result::PlatformException);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::PlatformException));
    EXPECT_EQ(log.Take(),
              (std::vector{LogLine{1, "CPolicyFile::GetTaskInfo(): platform error 0x8007000E: no storage"}}));
}

TEST_F(RareResults, AnyOtherExceptionWhileAnEnumeratorIsMade_GivesUnexpectedAndTheLineOfTheOperation)
{
    m_odd->failHandOut = [] { throw std::runtime_error("anything"); };
    LogCapture log;
    EXPECT_EQ(GetTaskInfo(), result::Unexpected);
    m_odd->failHandOut = [] { throw std::bad_alloc(); };
    EXPECT_EQ(GetTaskInfo(), result::Unexpected);
    const LogLine line{1, "Unexpected exception in CPolicyFile::GetTaskInfo()"};
    EXPECT_EQ(log.Take(), (std::vector{line, line}));
}

TEST_F(RareResults, EnumeratorThatFailsOnce_IsHandedOutTheNextTime)
{
    m_odd->failHandOut = [] { throw PlatformError(-1, u""); };
    ASSERT_EQ(GetTaskInfo(), result::PlatformException);
    m_odd->failHandOut = [] {};
    OutObject<IUnknown> slot;
    ASSERT_EQ(m_odd->GetTaskInfo(slot.Slot()), 0);
    EXPECT_EQ(TaskInfoClient(slot.Take().Query<ITaskInfo>()).All(), (std::vector{u"A/1"s}));
}

TEST_F(RareResults, MissingRecord_GivesItsCodeAndALineAndTheNextOneIsReached)
{
    zupm::ComPtr<HollowTaskInfo> tasks;
    ASSERT_EQ(CreatePlain(tasks), 0);
    tasks->Fill();
    OutText softwareId;
    OutText taskId;
    LogCapture log;
    ASSERT_EQ(tasks->GetFirst(softwareId.Slot(), taskId.Slot()), 0);
    ASSERT_EQ(log.Take().size(), 0U);
    EXPECT_EQ(tasks->GetNext(softwareId.Slot(), taskId.Slot()), result::RecordMissing);
    EXPECT_EQ(log.Take(),
              (std::vector{LogLine{1,
                                   "Unexpected exception in CTaskInfo::GetTaskData() - Internal error, invalid pointer "
                                   "in storage"}}));
    EXPECT_EQ(softwareId.Text(), u"A") << "the slots are left alone";
    EXPECT_EQ(taskId.Text(), u"1");
    EXPECT_EQ(tasks->GetNext(softwareId.Slot(), taskId.Slot()), 0);
    EXPECT_EQ(softwareId.Text(), u"B");
    EXPECT_EQ(taskId.Text(), u"2");
}

TEST_F(RareResults, SoftwareIDWithoutAMap_IsNotCreatedForGetTaskAndNotFoundForRemoveTask)
{
    m_odd->LoseMapOf(u"Lost");
    const Bstr software(u"Lost");
    const Bstr task(u"1");
    OutObject<IUnknown> slot;
    EXPECT_EQ(m_odd->GetTask(software.Get(), task.Get(), slot.Slot()), result::NotCreated);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(m_odd->RemoveTask(software.Get(), task.Get()), result::TaskNotFound);
    EXPECT_EQ(m_odd->GetTask(software.Get(), task.Get(), slot.Slot()), result::NotCreated)
        << "a removal that fails so leaves the index as it is";
}

TEST_F(RareResults, SoftwareIDWithoutAMap_IsNotListed)
{
    m_odd->LoseMapOf(u"Lost");
    m_odd->LoseMapOf(u"A2");
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return m_odd->get_TaskSoftwareIDs(slot); }), AllOf({u"A"}));
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return m_odd->GetTaskIDs(Bstr(u"Lost").Get(), slot); }), AllOf({}));
}

TEST_F(RareResults, SoftwareIDWithoutATask_IsNotListed)
{
    m_odd->EmptyMapOf(u"Empty");
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return m_odd->get_TaskSoftwareIDs(slot); }), AllOf({u"A"}));
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return m_odd->GetTaskIDs(Bstr(u"Empty").Get(), slot); }), AllOf({}));
}

TEST_F(RareResults, SoftwareIDWithoutAMap_IsANewTaskForAddTask)
{
    m_odd->LoseMapOf(u"Lost");
    const TaskClient task = m_file.NewTask(u"Lost", u"1");
    EXPECT_EQ(m_odd->AddTask(task.Object(), 1), 0);
    OutObject<IUnknown> slot;
    EXPECT_EQ(m_odd->GetTask(Bstr(u"Lost").Get(), Bstr(u"1").Get(), slot.Slot()), 0);
}

TEST_F(RareResults, InstanceThatCannotBeCreated_EndsAnAddWithItsCodeAfterTheOldEntryIsDeleted)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const ProductClient product = m_file.Policy(u"B");
    const TaskClient task = m_file.Task(u"A", u"1");
    Create<ITaskInfo>().Reset();
    const TempFolder empty;
    const ResourceFolder missing(empty.Folder().u16string());
    const auto buffer = [&] { return Utf8(m_file.Buffer().value_or(u"")); };

    EXPECT_EQ(m_file.Add(product), result::GeneralFailure);
    const std::string withoutProduct = ReplaceOnce(kFile, "<Product SoftwareID='B'/>", "");
    EXPECT_EQ(buffer(), withoutProduct);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound) << "the index stays empty";

    EXPECT_EQ(m_file.Add(task), result::GeneralFailure);
    EXPECT_EQ(buffer(), ReplaceOnce(withoutProduct, "<Task/>", ""));
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"0"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"0"}));
}

}  // namespace zupm::test
