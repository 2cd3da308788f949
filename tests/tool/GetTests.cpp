#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class Get : public ToolTest {};

TEST_F(Get, PrintsTheValueAndALineBreak)
{
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "General", "ScanInterval"}), "60\n");
}

TEST_F(Get, PrintsTextOfEveryScriptAsUtf8)
{
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "General", "Greeting"}), "Grüß Gott & willkommen\n");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "General", "GreetingJa"}), "ようこそ\n");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "Notify", "Message"}), "<b>Fertig!</b> & weiter 🚀\n");
}

TEST_F(Get, PrintsLineBreaksOfAValueAsTheyAre)
{
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTC3000", "Limits", "Comment"}), "Zeile 1\r\nZeile 2\n");
}

TEST_F(Get, ReadsATaskWhenOneIsNamed)
{
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "--task", "{task-1}"}), "2\n");
}

TEST_F(Get, PrintsTheValueAsJson)
{
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "--task", "{task-1}", "--json"}), R"({
  "schema": 1,
  "softwareId": "PRODUCTA1000",
  "taskId": "{task-1}",
  "section": "Schedule",
  "name": "Hour",
  "value": "2"
}
)");
}

TEST_F(Get, DoesNotWriteTheFile)
{
    const std::string before = Bytes();
    (void)Out({"get", "policy.xml", "PRODUCTA1000", "General", "ScanInterval"});
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Get, NamesFilePolicySentenceAndCodeWhenThereIsNoSuchPolicy)
{
    EXPECT_THAT(Tool({"get", "policy.xml", "PRODUCTX", "General", "Enabled"}),
                Fails(1,
                      "zupolicy: policy.xml: policy PRODUCTX: There is no product policy with that software ID. "
                      "[PolicyNotFound, 0xFFFFFB49]\n"));
}

TEST_F(Get, NamesTheMissingTaskSectionOrSetting)
{
    EXPECT_THAT(Tool({"get", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "--task", "{task-9}"}),
                Fails(1, HasSubstr("task PRODUCTA1000 {task-9}: There is no task with that software ID and task ID. "
                                   "[TaskNotFound, 0xFFFFFB48]")));
    EXPECT_THAT(Tool({"get", "policy.xml", "PRODUCTA1000", "Printing", "Enabled"}),
                Fails(1,
                      "zupolicy: policy.xml: policy PRODUCTA1000: section \"Printing\": There is no such section. "
                      "[SectionNotFound, 0xFFFFFB50]\n"));
    EXPECT_THAT(Tool({"get", "policy.xml", "PRODUCTA1000", "General", "Colour"}),
                Fails(1,
                      "zupolicy: policy.xml: policy PRODUCTA1000: setting \"Colour\" of section \"General\": There is "
                      "no such setting. [SettingNotFound, 0xFFFFFB4F]\n"));
}

TEST_F(Get, SuggestsASimilarName)
{
    const struct {
        std::vector<std::string> line;
        const char* meant;
    } rows[] = {
        {{"PRODUCTA1000", "general", "Enabled"}, "General"},
        {{"PRODUCTA1000", "Exclusion", "Count"}, "Exclusions"},
        {{"PRODUCTA1000", "General", "ENABLED"}, "Enabled"},
        {{"PRODUCTA1000", "General", "GreetingJp"}, "GreetingJa"},
        {{"PRODUCTA100", "General", "Enabled"}, "PRODUCTA1000"},
        {{"PRODUCTA1000", "Schedule", "Hour", "--task", "task-1"}, "{task-1}"},
        {{"PRODUCTA1000", "Schedule", "Hours", "--task", "{task-1}"}, "Hour"},
        {{"productb2000", "Schedule", "AtStart", "--task", "{task-1}"}, "PRODUCTB2000"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        std::vector<std::string> line = {"get", "policy.xml"};
        line.insert(line.end(), row.line.begin(), row.line.end());
        EXPECT_THAT(Tool(line), Fails(1, testing::EndsWith("]; did you mean \"" + std::string(row.meant) + "\"?\n")));
    }
}

TEST_F(Get, SuggestsNothingWhenNoNameIsSimilar)
{
    (void)Folder().Write(u"short.xml", SmallFile("<Product SoftwareID='P'><Section name='S'/></Product>"));
    EXPECT_THAT(Tool({"get", "short.xml", "P", "T", "N"}), Fails(1, testing::Not(HasSubstr("mean"))));
    EXPECT_THAT(Tool({"get", "short.xml", "Q", "T", "N"}), Fails(1, testing::Not(HasSubstr("mean"))));
}

TEST_F(Get, ReportsAMissingFileAsAFileError)
{
    EXPECT_THAT(Tool({"get", "none.xml", "PRODUCTA1000", "General", "Enabled"}),
                Fails(3, "zupolicy: none.xml: The file does not exist. [FileNotFound, 0x80070002]\n"));
}

TEST_F(Get, ReportsABrokenFileWithThePositionOnce)
{
    (void)Folder().Write(u"broken.xml", "<a>\n <b></a>\n");
    EXPECT_THAT(Tool({"get", "broken.xml", "PRODUCTA1000", "General", "Enabled"}),
                Fails(3, MatchesPattern("zupolicy: broken\\.xml:2:[0-9]+: .+ \\[SyntaxError, 0xFFFFFBAE\\]\n")));
}

}  // namespace
}  // namespace zupm::test
