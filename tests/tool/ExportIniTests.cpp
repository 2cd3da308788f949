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

constexpr std::string_view kCollisions = R"(<TaskGroup SoftwareID="P" TaskID="T"><Task>
<Section name="S">
<Setting name="Key">1</Setting>
<Setting name="key">2</Setting>
</Section>
<Section name="s"><Setting name="KEY">3</Setting><Setting name="other">4</Setting></Section>
<Section name="Task"><Setting name="taskname">5</Setting></Section>
</Task></TaskGroup>)";

/// The warnings about those, from the line of the first setting on.
std::string CollisionWarnings(const std::string& file, int line)
{
    const auto place = [&](int below, int column) {
        return file + ":" + std::to_string(line + below) + ":" + std::to_string(column) + ": warning: setting ";
    };
    constexpr const char* kEnd = " are one in an INI file; it holds one of them\n";
    return place(1, 1) + "key of section S and setting Key of section S" + kEnd +  //
           place(3, 19) + "KEY of section s and setting Key of section S" + kEnd + place(4, 22) +
           "taskname of section Task and the task's field TaskName" + kEnd;
}

TEST_F(ExportIni, WarnsOfNamesThatAreOneInAnIniFile)
{
    (void)Folder().Write(u"p.xml", SmallFile("", kCollisions));
    const ToolRun run = Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages, CollisionWarnings("p.xml", 11));
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("[S]\r\nKey=3\r\nother=4\r\n"));
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("[Task]\r\nTaskName=5\r\n"));
}

TEST_F(ExportIni, CheckWarnsOfThemToo)
{
    (void)Folder().Write(u"p.xml", SmallFile("", kCollisions));
    const ToolRun run = Tool({"check", "p.xml", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, CollisionWarnings("p.xml", 11));
    EXPECT_THAT(run.out, HasSubstr("the task's field TaskName are one in an INI file"));
}

}  // namespace
}  // namespace zupm::test
