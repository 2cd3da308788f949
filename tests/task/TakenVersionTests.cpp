// The version that a task had when it was taken out of its file.
#include "tests/task/TaskTest.h"

namespace zupm::test {

using TakenTask = TaskTest;

TEST_F(TakenTask, HasTheStampOfItsInnerElementAsItIsWritten)
{
    LoadGroups(
        "<TaskGroup SoftwareID='A' TaskID='1' TaskVersion='5'><Task TaskVersion=' 0x&amp;'/></TaskGroup>"
        "<TaskGroup SoftwareID='A' TaskID='2' TaskVersion='6'><Task/></TaskGroup>\n");
    EXPECT_EQ(TakenVersionOf(m_file.Task(u"A", u"1")), u" 0x&");
    EXPECT_EQ(m_file.Task(u"A", u"1").Version(), Ok(u" 0x&"));
    EXPECT_EQ(TakenVersionOf(m_file.Task(u"A", u"2")), u"");
}

TEST_F(TakenTask, KeepsTheOldStampWhenItIsHandedBack)
{
    LoadGroups("<TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='7'/></TaskGroup>\n");
    TaskClient task = m_file.Task(u"A", u"1");
    ASSERT_EQ(m_file.Add(task), 0);
    EXPECT_EQ(TakenVersionOf(task), u"7");
    EXPECT_EQ(TakenVersionOf(m_file.Task(u"A", u"1")), u"20260102030405");
}

TEST_F(TakenTask, TakenVersion_FreesWhatTheSlotHeld)
{
    // Unlike Version; the leak checker sees the other way.
    const auto sections = SectionsOf(m_file.NewTask(u"A", u"1"));
    OutText slot;
    EXPECT_EQ(sections->get_TakenVersion(slot.Slot()), 0);
    EXPECT_EQ(slot.Text(), u"");
}

TEST_F(TakenTask, NullSlotsAreRefusedFirstOfAll)
{
    ExpectNullSlotsAreRefused(*SectionsOf(m_file.NewTask(u"A", u"1")).Get(), u"ZuPolicyManager.PolicyTask");
}

}  // namespace zupm::test
