// An enumerator, in every form of calling.
#include <gtest/gtest.h>

#include "tests/support/ErrorInfo.h"
#include "tests/support/MemberCall.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

class TaskEnumeration : public testing::Test {
protected:
    /// An enumerator over (B, 1), (A, 2), (A, 10), (a, 1), in that document order.
    [[nodiscard]] ComPtr<ITaskInfo> FourTasks()
    {
        std::string text = "<F><TaskRoot>";
        for (const char* ids : {"SoftwareID='B' TaskID='1'", "SoftwareID='A' TaskID='2'", "SoftwareID='A' TaskID='10'",
                                "SoftwareID='a' TaskID='1'"}) {
            text += std::string("<TaskGroup ") + ids + "><Task/></TaskGroup>";
        }
        EXPECT_EQ(m_file.Load(m_folder.Write(u"policy.xml", text + "</TaskRoot></F>")), 0);
        return ComPtr<ITaskInfo>(m_file.Tasks().Object());
    }
    /// One step by name, as "code software/task"; both slots are poisoned.
    [[nodiscard]] static std::string Step(ITaskInfo* tasks, std::u16string_view member)
    {
        OutText softwareId;
        OutText taskId;
        const CallOutcome outcome = MemberCall(tasks, member).Out(softwareId).Out(taskId).Call();
        const bool untouched = softwareId.Untouched() && taskId.Untouched();
        return std::to_string(outcome.code) + " " +
               (untouched ? "(untouched)" : Utf8(softwareId.Text() + u"/" + taskId.Text()));
    }

    TempFolder m_folder;
    PolicyFileClient m_file;
};

}  // namespace

TEST_F(TaskEnumeration, CreatedOnItsOwnIsEmpty)
{
    const ComPtr<ITaskInfo> tasks = Create<ITaskInfo>();
    OutText softwareId;
    OutText taskId;
    EXPECT_EQ(tasks->GetFirst(softwareId.Slot(), taskId.Slot()), result::ListEmpty);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::ListEmpty));
    EXPECT_EQ(tasks->GetNext(softwareId.Slot(), taskId.Slot()), result::EndOfList);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::EndOfList));
    EXPECT_TRUE(softwareId.Untouched());
    EXPECT_TRUE(taskId.Untouched());
    EXPECT_EQ(Step(tasks.Get(), u"GetFirst"), "-1111 (untouched)");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "-1112 (untouched)");
}

TEST_F(TaskEnumeration, ByNameGivesThePairsInCodeUnitOrder)
{
    const ComPtr<ITaskInfo> tasks = FourTasks();
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "-1112 (untouched)") << "before the first";
    EXPECT_EQ(Step(tasks.Get(), u"GetFirst"), "0 A/10");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "0 A/2");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "0 B/1");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "0 a/1");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "-1112 (untouched)");
    EXPECT_EQ(Step(tasks.Get(), u"GetNext"), "-1112 (untouched)");
    EXPECT_EQ(Step(tasks.Get(), u"GetFirst"), "0 A/10") << "starts over";
}

TEST_F(TaskEnumeration, WithTwoOutputsHasNoValueByName)
{
    const ComPtr<ITaskInfo> tasks = FourTasks();
    OutText softwareId;
    EXPECT_EQ(MemberCall(tasks.Get(), u"GetFirst").Out(softwareId).ForResult().code, DISP_E_BADPARAMCOUNT);
    EXPECT_TRUE(softwareId.Untouched());
}

TEST_F(TaskEnumeration, IntoANullSlotIsABadArgument)
{
    const ComPtr<ITaskInfo> tasks = FourTasks();
    OutText slot;
    EXPECT_EQ(tasks->GetFirst(nullptr, slot.Slot()), result::BadArgument);
    EXPECT_EQ(tasks->GetFirst(slot.Slot(), nullptr), result::BadArgument);
    ASSERT_EQ(Step(tasks.Get(), u"GetFirst"), "0 A/10");
    EXPECT_EQ(tasks->GetNext(nullptr, nullptr), result::BadArgument);
}

TEST_F(TaskEnumeration, OutlivesTheFileAndKeepsWhatItHad)
{
    const ComPtr<ITaskInfo> tasks = FourTasks();
    ASSERT_EQ(m_file.RemoveTask(u"A", u"10"), 0);
    m_file = PolicyFileClient();
    EXPECT_EQ(Step(tasks.Get(), u"GetFirst"), "0 A/10");
}

}  // namespace zupm::test
