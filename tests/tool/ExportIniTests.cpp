#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class ExportIni : public ToolTest {};

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
    constexpr const char* kEnd = " have the same name in an INI file; only one is kept\n";
    return place(1, 1) + "key of section S and setting Key of section S" + kEnd +  //
           place(3, 19) + "KEY of section s and setting Key of section S" + kEnd + place(4, 22) +
           "taskname of section Task and the task's field TaskName" + kEnd;
}

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

TEST_F(ExportIni, RefusesThePolicyFileItselfAndAnEmptyName)
{
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "./policy.xml", "--task", "{task-1}"}),
                Fails(2, "zupolicy: ./policy.xml: is the policy file; name another file for the export\n"));
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "", "--task", "{task-1}"}),
                Fails(2, "zupolicy: the INI file's name is empty\n"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(ExportIni, RefusesAFolder)
{
    std::filesystem::create_directory(Folder().Folder() / "folder");
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "folder", "--task", "{task-1}"}),
                Fails(3, "zupolicy: folder: not a regular file; use - for standard output\n"));
    EXPECT_FALSE(Folder().Has(u"folder.lock"));
}

TEST_F(ExportIni, WarnsOfNamesThatAreTheSameInAnIniFile)
{
    (void)Folder().Write(u"p.xml", SmallFile("", kCollisions));
    const ToolRun run = Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages, CollisionWarnings("p.xml", 11));
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("[S]\r\nKey=3\r\nother=4\r\n"));
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("[Task]\r\nTaskName=5\r\n"));
}

TEST_F(ExportIni, CheckWarnsOfTheSameNamesToo)
{
    (void)Folder().Write(u"p.xml", SmallFile("", kCollisions));
    const ToolRun run = Tool({"check", "p.xml", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, CollisionWarnings("p.xml", 11));
    EXPECT_THAT(run.out, HasSubstr("the task's field TaskName have the same name in an INI file"));
}

TEST_F(ExportIni, PrintsNothingAboutATaskThatTheToolMade)
{
    (void)Folder().Write(u"p.xml", SmallFile(""));
    const std::vector<std::string> set = {
        "set",        "p.xml", "P",           "S",   "N",      "1",       "--task",    "T",  "--display-name", "A name",
        "--priority", "-7",    "--platforms", "LNX", "--type", "Collect", "--creator", "ME", "--create"};
    EXPECT_EQ(Out(set), "");
    EXPECT_THAT(Bytes(u"p.xml"), HasSubstr("Setting name=\"TaskName\""));
    EXPECT_EQ(Out({"export-ini", "p.xml", "P", "task.ini", "--task", "T"}), "");
    EXPECT_EQ(Out({"check", "--strict", "p.xml"}), "");
    EXPECT_EQ(Out({"set", "p.xml", "P", "S", "N", "2", "--task", "T"}), "");
    EXPECT_EQ(Out({"check", "--strict", "p.xml"}), "");
}

/// A task with these sections, and with the fields that the attributes set.
std::string TaskFile(const std::string& attributes, const std::string& sections)
{
    return SmallFile(
        "", "<TaskGroup SoftwareID='P' TaskID='T' " + attributes + "><Task>" + sections + "</Task></TaskGroup>\n");
}

TEST_F(ExportIni, PrintsNothingWhenNothingIsLost)
{
    const struct {
        const char* label;
        const char* attributes;
        const char* sections;
    } rows[] = {
        {"equal values", "", "<S name='S'><S name='a'>1</S><S name='A'>1</S><S name=' a'>1</S></S>"},
        {"equal values in one section", "", "<S name='S'><S name='a'>1</S></S><S name='s '><S name='A'>1</S></S>"},
        {"other sections", "", "<S name='S'><S name='a'>1</S></S><S name='T'><S name='a'>2</S></S>"},
        {"the same setting", "DisplayName='n'", "<S name='Task'><S name='TaskName'>n</S></S>"},
        {"the default of a field", "", "<S name='Task'><S name='TaskName'>invalid</S><S name='taskversion'/></S>"},
        {"an empty field", "DisplayName=''", "<S name='Task'><S name='TaskName'/></S>"},
        {"a priority", "TaskPriority=' +007x'", "<S name='TASK'><S name='TaskPriority'>7</S></S>"},
        {"a low priority", "TaskPriority='-99999999999'", "<S name='Task'><S name='TaskPriority'>-2147483648</S></S>"},
        {"no priority", "", "<S name='Task'><S name='TaskPriority'>0</S></S>"},
        {"a field's name elsewhere", "", "<S name='Other'><S name='TaskName'>1</S></S>"},
        {"brackets in a section", "", "<S name='[a]b'><S name='a]'>1</S></S><S name=';'><S name='#'>2</S></S>"},
        {"a bracket alone", "", "<S name='S'><S name='[a'>1</S><S name=''>=</S></S>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        (void)Folder().Write(u"p.xml", TaskFile(row.attributes, row.sections));
        EXPECT_EQ(Out({"check", "--strict", "p.xml"}), "");
        EXPECT_EQ(Out({"export-ini", "p.xml", "P", "task.ini", "--task", "T"}), "");
    }
}

TEST_F(ExportIni, WarnsOfEachSettingThatAnIniFileDoesNotHold)
{
    // Two sections of one name are one: the places are in order all the same.
    (void)Folder().Write(u"p.xml", TaskFile("",
                                            "\n<S name='S'><S name='a'>1</S><S name='A'>2&#10;3</S></S>\n"
                                            "<S name='T'><S name=' [a]'>1</S><S name='ok'>1</S></S>\n"
                                            "<S name='S'><S name='[b'>]</S><S name='A&#13;'>2</S></S>\n"
                                            "<S name='s&#10;'><S name='a'>2</S></S>\n"
                                            "<S name='U'><S name='k=v'>1</S><S name='\t;c'>1</S></S>\n"));
    const std::string again = ", and each export adds its line again\n";
    const std::string expected =
        "p.xml:10:30: warning: setting A of section S is not in the INI file, because its value has a line break\n"
        "p.xml:11:13: warning: setting  [a] of section T is read as a section from an INI file" +
        again + "p.xml:12:13: warning: setting [b of section S is read as a section from an INI file" + again +
        "p.xml:12:31: warning: setting A\\r of section S is not in the INI file, because its name has a line break\n"
        "p.xml:13:18: warning: setting a of section s\\n is not in the INI file, because the section's name has a line "
        "break\n"
        "p.xml:14:13: warning: setting k=v of section U is read from an INI file with a name that ends at the =" +
        again + "p.xml:14:32: warning: setting  ;c of section U is a comment in an INI file for many readers\n";
    const ToolRun run = Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, expected);
    const ToolRun second = Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T", "--json"});
    EXPECT_EQ(second.messages, expected);
    EXPECT_THAT(second.out, HasSubstr("\"line\": 14,\n      \"column\": 32,\n"));
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("k=v=1\r\nk=v=1\r\n")) << "as the warning says";
    EXPECT_EQ(Out({"export-ini", "p.xml", "P", "task.ini", "--task", "T", "--quiet"}), "");
    EXPECT_THAT(Tool({"check", "p.xml"}).messages, testing::Not(HasSubstr("INI")));
}

TEST_F(ExportIni, RefusesAFieldWithALineBreakBeforeAnythingIsWritten)
{
    (void)Folder().Write(u"p.xml", TaskFile("Platforms='a&#10;b'", "<S name='S'><S name='a'>1</S></S>"));
    (void)Folder().Write(u"task.ini", "x=1\n");
    EXPECT_THAT(
        Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T"}),
        Fails(3, "zupolicy: task.ini: the INI file cannot be written: task P T has a line break in its platforms\n"));
    EXPECT_EQ(Bytes(u"task.ini"), "x=1\n");
}

TEST_F(ExportIni, WarnsOfEachFieldThatASettingReplaces)
{
    constexpr const char* kFields[] = {"TaskName", "Platforms",         "TaskPriority", "SoftwareName",
                                       "TaskID",   "CreatorSoftwareID", "TaskType",     "TaskVersion"};
    for (const std::string field : kFields) {
        (void)Folder().Write(u"p.xml", TaskFile("", "<S name=' tASK'><S name='" + field + "&#9;'>other</S></S>"));
        EXPECT_THAT(Tool({"check", "p.xml"}).messages,
                    HasSubstr("warning: setting " + field + "\\t of section  tASK and the task's field " + field +
                              " have the same name in an INI file; only one is kept\n"));
    }
    (void)Folder().Write(u"p.xml", TaskFile("DisplayName=''", "<S name='Task'><S name='TaskName'>invalid</S></S>"));
    EXPECT_THAT(Tool({"check", "p.xml"}).messages, HasSubstr("the task's field TaskName have the same name"));
}

TEST_F(ExportIni, WarnsOfItsOwnTaskOnly)
{
    const auto task = [](const std::string& id) {
        return "<TaskGroup SoftwareID='P' TaskID='" + id + "'><Task><S name='S'><S name='" + id + "'>1</S><S name=' " +
               id + "'>2</S></S></Task></TaskGroup>\n";
    };
    (void)Folder().Write(u"p.xml", SmallFile("<Product SoftwareID='P'><S name='S'><S name='a'>1</S><S name='A'>2</S>"
                                             "</S></Product>",
                                             task("a") + task("b") + task("c")));
    const std::string end = " of section S have the same name in an INI file; only one is kept\n";
    EXPECT_EQ(Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "b"}).messages,
              "p.xml:10:73: warning: setting  b of section S and setting b" + end);
    // Policies are never exported.
    EXPECT_EQ(Tool({"check", "p.xml"}).messages,
              "p.xml:9:73: warning: setting  a of section S and setting a" + end +
                  "p.xml:10:73: warning: setting  b of section S and setting b" + end +
                  "p.xml:11:73: warning: setting  c of section S and setting c" + end);
}

TEST_F(ExportIni, PrintsNothingAboutARepeatedSetting)
{
    (void)Folder().Write(u"p.xml", TaskFile("", "<S name='S'><S name='a'>1</S><S name='a'>2</S></S>"));
    EXPECT_EQ(Tool({"export-ini", "p.xml", "P", "task.ini", "--task", "T"}).messages, "");
    EXPECT_THAT(Tool({"check", "p.xml"}).messages, HasSubstr("occurs again; only the first is used"));
}

}  // namespace
}  // namespace zupm::test
