#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Remove : public ToolTest {};

TEST_F(Remove, RemovesASettingAndKeepsItsSection)
{
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTC3000", "Limits", "MaxThreads"}), "");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTC3000", "Limits", "Comment"}), "Zeile 1\r\nZeile 2\n");
    EXPECT_EQ(Tool({"get", "policy.xml", "PRODUCTC3000", "Limits", "MaxThreads"}).exitCode, 1);
}

TEST_F(Remove, RemovesASection)
{
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTA1000", "Exclusions"}), "");
    const std::string out = Out({"show", "policy.xml", "PRODUCTA1000"});
    EXPECT_THAT(out, testing::Not(HasSubstr("Exclusions")));
    EXPECT_THAT(out, HasSubstr("[Notify]"));
}

TEST_F(Remove, RemovesAPolicyAndKeepsItsTasks)
{
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTB2000"}), "");
    const std::string out = Out({"show", "policy.xml", "PRODUCTB2000"});
    EXPECT_THAT(out, testing::Not(HasSubstr("Policy PRODUCTB2000")));
    EXPECT_THAT(out, HasSubstr("Task PRODUCTB2000 {task-1}"));
    EXPECT_EQ(Changes(), R"(- <Product SoftwareID="PRODUCTB2000">
- <Section name="General">
- <Setting name="Enabled">0</Setting>
- <Setting name="LogLevel">3</Setting>
- </Section>
- <Section name="Proxy"/>
- </Product>
)");
}

TEST_F(Remove, RemovesATaskAndKeepsThePolicy)
{
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTA1000", "--task", "{task-2}"}), "");
    const std::string out = Out({"show", "policy.xml", "PRODUCTA1000"});
    EXPECT_THAT(out, HasSubstr("Policy PRODUCTA1000\n"));
    EXPECT_THAT(out, HasSubstr("{task-1}"));
    EXPECT_THAT(out, testing::Not(HasSubstr("{task-2}")));
}

TEST_F(Remove, RemovesASettingOfATask)
{
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTA1000", "Schedule", "Minute", "--task", "{task-1}"}), "");
    EXPECT_EQ(Tool({"get", "policy.xml", "PRODUCTA1000", "Schedule", "Minute", "--task", "{task-1}"}).exitCode, 1);
}

TEST_F(Remove, PrintsTheChangeAndWritesNothingInADryRun)
{
    const std::string before = Bytes();
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTB2000", "--dry-run"}), "policy PRODUCTB2000: (removed)\n");
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTB2000", "General", "--dry-run"}),
              "policy PRODUCTB2000: General: (section removed)\n");
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "--dry-run"}),
              "policy PRODUCTB2000: General/LogLevel: \"3\" -> (removed)\n");
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Remove, WritesAnotherFileAndPrintsTheChangeAsJson)
{
    const std::string before = Bytes();
    const json change = json::parse(
        Out({"remove", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "--output", "new.xml", "--json"}));
    EXPECT_EQ(change["before"], "3");
    EXPECT_EQ(change["after"], nullptr);
    EXPECT_EQ(change["written"], "new.xml");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Tool({"get", "new.xml", "PRODUCTB2000", "General", "LogLevel"}).exitCode, 1);
}

TEST_F(Remove, WritesTheDocumentToStandardOutput)
{
    const std::string before = Bytes();
    const ToolRun run = Tool({"remove", "policy.xml", "PRODUCTB2000", "--output", "-"});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTB2000", "--output", "new.xml"}), "");
    EXPECT_EQ(run.out, Bytes(u"new.xml"));
    EXPECT_EQ(Bytes(), before);
    EXPECT_FALSE(Folder().Has(u"-"));
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTB2000", "--output", "-", "--json"}),
                Fails(2, HasSubstr("cannot be used with --json")));
}

TEST_F(Remove, NamesWhatIsMissingAndSuggestsASimilarName)
{
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTB2000", "Genral"}),
                Fails(1, HasSubstr(": section \"Genral\": There is no such section. [SectionNotFound, 0xFFFFFB50]; did "
                                   "you mean \"General\"?\n")));
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTb2000"}), Fails(1, HasSubstr("did you mean \"PRODUCTB2000\"?")));
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTA1000", "--task", "{tsk-1}"}),
                Fails(1, HasSubstr("did you mean \"{task-1}\"?")));
}

TEST_F(Remove, RefusesWhatTheComponentWritesAgain)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "General", "Own", "1", "--task", "{task-1}"}), "");
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTA1000", "General", "--task", "{task-1}"}), "") << "it held more";
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTA1000", "General", "--task", "{task-1}", "--ignore-missing"}),
                Fails(4,
                      "zupolicy: policy.xml: task PRODUCTA1000 {task-1}: section General only repeats fields of the "
                      "task and cannot be removed\n"));
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTA1000", "Task", "TaskName", "--task", "{task-1}"}),
                Fails(4,
                      "zupolicy: policy.xml: task PRODUCTA1000 {task-1}: setting TaskName of section Task repeats a "
                      "field of the task and cannot be removed\n"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Remove, FailsAndWritesNothingWhenThereIsNothingToRemove)
{
    const std::string before = Bytes();
    const std::vector<std::vector<std::string>> lines = {
        {"PRODUCTX"},
        {"PRODUCTA1000", "--task", "{task-9}"},
        {"PRODUCTA1000", "None"},
        {"PRODUCTA1000", "General", "None"},
        {"PRODUCTA1000", "None", "None"},
        {"PRODUCTX", "General", "Enabled"},
    };
    for (std::vector<std::string> line : lines) {
        line.insert(line.begin(), {"remove", "policy.xml"});
        EXPECT_THAT(Tool(line), Fails(1, HasSubstr("zupolicy: policy.xml: ")));
    }
    EXPECT_EQ(Bytes(), before);
}

}  // namespace
}  // namespace zupm::test
