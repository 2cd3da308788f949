// The version that a task had when it was taken out of its file.
#include "tests/support/Names.h"
#include "tests/support/Outs.h"
#include "tests/task/TaskTest.h"

namespace zupm::test {

namespace {

class TakenTask : public TaskTest {
protected:
    [[nodiscard]] static std::u16string VersionOf(const TaskClient& product)
    {
        OutText version;
        EXPECT_EQ(SectionsOf(product)->get_TakenVersion(version.Slot()), 0);
        return version.Text();
    }
    [[nodiscard]] static ComPtr<IPolicySections> SectionsOf(const TaskClient& product)
    {
        return ComPtr<IPolicyTask>(product.Object()).Query<IPolicySections>();
    }
};

}  // namespace

TEST_F(TakenTask, HasTheStampOfItsInnerElementAsItIsWritten)
{
    LoadGroups(
        "<TaskGroup SoftwareID='A' TaskID='1' TaskVersion='5'><Task TaskVersion=' 0x&amp;'/></TaskGroup>"
        "<TaskGroup SoftwareID='A' TaskID='2' TaskVersion='6'><Task/></TaskGroup>\n");
    EXPECT_EQ(VersionOf(m_file.Task(u"A", u"1")), u" 0x&");
    EXPECT_EQ(m_file.Task(u"A", u"1").Version(), Ok(u" 0x&"));
    EXPECT_EQ(VersionOf(m_file.Task(u"A", u"2")), u"");
}

TEST_F(TakenTask, KeepsTheOldStampWhenItIsHandedBack)
{
    LoadGroups("<TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='7'/></TaskGroup>\n");
    TaskClient task = m_file.Task(u"A", u"1");
    ASSERT_EQ(m_file.Add(task), 0);
    EXPECT_EQ(VersionOf(task), u"7");
    EXPECT_EQ(VersionOf(m_file.Task(u"A", u"1")), u"20260102030405");
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
    const auto sections = SectionsOf(m_file.NewTask(u"A", u"1"));
    const Bstr missing(u"missing");
    EXPECT_EQ(sections->get_SectionNames(nullptr), result::BadArgument);
    EXPECT_EQ(sections->GetSettingNames(missing.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(sections->GetStoredSetting(missing.Get(), missing.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(sections->get_TakenVersion(nullptr), result::BadArgument);
    const ErrorInformation information = TakeErrorInformation();
    EXPECT_EQ(information.description, result::SentenceFor(result::BadArgument));
    EXPECT_TRUE(information.interfaceId == IID_IPolicySections);
    EXPECT_EQ(information.source, u"ZuPolicyManager.PolicyTask");
}

}  // namespace zupm::test
