// A task's data before anything is loaded: an object always loads a task when it is made, so the data are asked here
// directly.
#include "task/CTaskData.h"
#include "tests/task/TaskTest.h"
#include "xml/Document.h"

namespace zupm::test {

namespace {

class UnloadedTask : public TaskTest {
protected:
    CTaskData m_data{nullptr};
};

}  // namespace

TEST_F(UnloadedTask, TextIsRefusedWithoutATaskAndLeftUntouched)
{
    std::u16string text = u"untouched";
    EXPECT_EQ(m_data.GetTaskDataXml(text), result::ElementMissing);
    EXPECT_EQ(text, u"untouched");
    EXPECT_EQ(m_log.Take(), std::vector<LogLine>{});
}

TEST_F(UnloadedTask, EverySectionOperationIsRefused)
{
    std::u16string value = u"untouched";
    EXPECT_EQ(m_data.GetSectionSetting(u"S", u"x", value), result::NotInitialised);
    EXPECT_EQ(value, u"untouched");
    EXPECT_EQ(m_data.PutSectionSetting(u"S", u"x", u"1"), result::NotInitialised);
    EXPECT_EQ(m_data.RemoveSetting(u"S", u"x"), result::NotInitialised);
    EXPECT_EQ(m_data.RemoveSection(u"S"), result::NotInitialised);
    EXPECT_EQ(m_data.GetStoredSetting(u"S", u"x", value), result::NotInitialised);
    EXPECT_EQ(value, u"untouched");
    NameList names;
    EXPECT_EQ(m_data.GetSectionNames(names), result::NotInitialised);
    EXPECT_EQ(m_data.GetSettingNames(u"S", names), result::NotInitialised);
}

TEST_F(UnloadedTask, CopyingIsRefusedAndChangesNothing)
{
    const AdvXMLParser::Document target(u"TaskGroup");
    std::uint64_t version = 7;
    EXPECT_EQ(m_data.CopyData(target.GetRoot(), version), result::NotInitialised);
    EXPECT_EQ(version, 7U);
    EXPECT_EQ(target.GenerateXML(false).Utf8(), "<TaskGroup/>");
}

TEST_F(UnloadedTask, IniFileGetsTheFieldsBeforeTheMissingSettingsAreReported)
{
    EXPECT_EQ(m_data.WriteTaskDataToIniFile(m_folder.Path(u"task.ini")), result::CursorNotInitialised);
    EXPECT_EQ(m_folder.Read(u"task.ini"),
              "[Task]\r\nTaskName=invalid\r\nPlatforms=invalid\r\nTaskPriority=0\r\nSoftwareName=invalid\r\n"
              "TaskID=invalid\r\nCreatorSoftwareID=invalid\r\nTaskType=invalid\r\nTaskVersion=\r\n");
}

TEST_F(UnloadedTask, AfterDeinitialiseATaskIsUnloadedAgainAndKeepsItsFields)
{
    std::u16string detail;
    ASSERT_EQ(m_data.Initialize(u"<X><TaskGroup TaskID='1'><Task/></TaskGroup></X>", detail), 0);
    std::u16string text;
    ASSERT_EQ(m_data.GetTaskDataXml(text), 0);
    EXPECT_EQ(m_data.Deinitialize(), 0);
    EXPECT_EQ(m_data.GetTaskDataXml(text), result::ElementMissing);
    EXPECT_EQ(m_data.Fields().taskId, u"1");
}

TEST_F(UnloadedTask, AMissingAttributeLeavesTheFieldOfAnEarlierLoad)
{
    std::u16string detail;
    ASSERT_EQ(
        m_data.Initialize(u"<X><TaskGroup TaskID='1' TaskType='t' TaskPriority='5'><Task/></TaskGroup></X>", detail),
        0);
    ASSERT_EQ(m_data.Initialize(u"<X><TaskGroup TaskID='2'><Task/></TaskGroup></X>", detail), 0);
    EXPECT_EQ(m_data.Fields().taskId, u"2");
    EXPECT_EQ(m_data.Fields().taskType, u"t");
    EXPECT_EQ(m_data.Fields().priority, 5);
}

}  // namespace zupm::test
