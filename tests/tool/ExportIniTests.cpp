#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class ExportIni : public ToolTest {};

TEST_F(ExportIni, WritesTheTasksFieldsAndSettings)
{
    EXPECT_EQ(Out({"export-ini", "policy.xml", "PRODUCTB2000", "task.ini", "--task", "{task-1}"}), "");
    const std::string ini = Bytes(u"task.ini");
    EXPECT_THAT(ini, HasSubstr("[Task]\r\nTaskName=Inventory\r\nPlatforms=LNX\r\nTaskPriority=0\r\n"
                               "SoftwareName=PRODUCTB2000\r\nTaskID={task-1}\r\nCreatorSoftwareID=SITEADMIN\r\n"
                               "TaskType=Collect\r\nTaskVersion=20231201090000\r\n"));
    EXPECT_THAT(ini, HasSubstr("[Schedule]\r\nAtStart=1\r\n"));
}

TEST_F(ExportIni, KeepsTheOtherLinesOfAnIniFile)
{
    (void)Folder().Write(u"task.ini", "; mine\r\n[Other]\r\nKeep=1\r\n");
    EXPECT_EQ(Out({"export-ini", "policy.xml", "PRODUCTB2000", "task.ini", "--task", "{task-1}"}), "");
    EXPECT_THAT(Bytes(u"task.ini"), testing::StartsWith("; mine\r\n[Other]\r\nKeep=1\r\n"));
}

TEST_F(ExportIni, FailsWithoutATask)
{
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "task.ini"}), Fails(2, HasSubstr("--task")));
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "task.ini", "--task", "{task-9}"}),
                Fails(1, HasSubstr("[TaskNotFound, 0xFFFFFB48]")));
    EXPECT_FALSE(Folder().Has(u"task.ini"));
}

TEST_F(ExportIni, ReportsAnIniFileThatCannotBeWritten)
{
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "none/task.ini", "--task", "{task-1}"}),
                Fails(3, "zupolicy: none/task.ini: the INI file cannot be written\n"));
}

TEST_F(ExportIni, ToADash_PrintsTheSameBytesAndLeavesNoFile)
{
    EXPECT_EQ(Out({"export-ini", "policy.xml", "PRODUCTB2000", "task.ini", "--task", "{task-1}"}), "");
    const std::string ini = Bytes(u"task.ini");
    const std::vector<std::string> names = Folder().Names();
    EXPECT_EQ(Out({"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-1}"}), ini);
    EXPECT_EQ(Folder().Names(), names);
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-9}"}),
                Fails(1, HasSubstr("[TaskNotFound, 0xFFFFFB48]")));
}

TEST_F(ExportIni, RefusesAFolder)
{
    std::filesystem::create_directory(Folder().Folder() / "folder");
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "folder", "--task", "{task-1}"}),
                Fails(3, "zupolicy: folder: not a regular file; `-` writes to the standard output\n"));
    EXPECT_FALSE(Folder().Has(u"folder.lock"));
}

}  // namespace
}  // namespace zupm::test
