// Settings found in many files.
#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Query : public ToolTest {
protected:
    /// Runs `query policy.xml` with these options.
    [[nodiscard]] ToolRun Of(const std::vector<std::string>& options) const
    {
        std::vector<std::string> arguments = {"query", "policy.xml"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Tool(arguments);
    }
    /// Writes a file with one setting, policy P General/Interval.
    void WriteFile(const std::string& name, const std::string& value) const
    {
        Folder().Write(
            std::u16string(name.begin(), name.end()),
            SmallFile("<Product SoftwareID='P'><S name='General'><s name='Interval'>" + value + "</s></S></Product>"));
    }
};

TEST_F(Query, WithoutPatterns_FindsEverySettingOfPoliciesThenTasks)
{
    const ToolRun run = Of({});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_THAT(run.out, testing::StartsWith("policy.xml: policy PRODUCTA1000 General/Enabled: \"1\"\n"
                                             "policy.xml: policy PRODUCTA1000 General/ScanInterval: \"60\"\n"));
    EXPECT_THAT(run.out, testing::EndsWith("policy.xml: task PRODUCTB2000 {task-1} Schedule/AtStart: \"1\"\n"));
}

TEST_F(Query, PatternsMustMatchAsAWhole)
{
    struct Row {
        std::vector<std::string> options;
        const char* found;
    };
    const Row rows[] = {
        {{"--name", "Scan*"}, "policy PRODUCTA1000 General/ScanInterval: \"60\""},
        {{"--name", "S?anI*t*l"}, "policy PRODUCTA1000 General/ScanInterval: \"60\""},
        {{"--name", "Scan"}, ""},
        {{"--name", "scan*"}, ""},
        {{"--software", "*2000", "--name", "Log*"}, "policy PRODUCTB2000 General/LogLevel: \"3\""},
        {{"--task", "*", "--software", "PRODUCTB*"}, "task PRODUCTB2000 {task-1} Schedule/AtStart: \"1\""},
        {{"--task", "{task-?}", "--section", "Scope"}, "task PRODUCTA1000 {task-1} Scope/Targets: \"C:\\\\;D:\\\\\""},
        {{"--value", "?????", "--name", "GreetingJa"}, ""},
        {{"--value", "????", "--name", "GreetingJa"},
         "policy PRODUCTA1000 General/GreetingJa: \"\xE3\x82\x88\xE3\x81\x86\xE3\x81\x93\xE3\x81\x9D\""},
        {{"--value", "Zeile 1*"}, "policy PRODUCTC3000 Limits/Comment: \"Zeile 1\\r\\nZeile 2\""},
        {{"--section", ""}, ""},
    };
    for (const Row& row : rows) {
        const std::string found = row.found;
        const std::string label = testing::PrintToString(row.options);
        const ToolRun run = Of(row.options);
        EXPECT_EQ(run.out, found.empty() ? "" : "policy.xml: " + found + "\n") << label;
        EXPECT_EQ(run.exitCode, found.empty() ? 1 : 0) << label;
    }
}

TEST_F(Query, AQuestionMark_StandsForOneCharacterOfAnyLength)
{
    WriteFile("policy.xml", "x\xF0\x9F\x9A\x80y");
    EXPECT_EQ(Of({"--value", "x?y"}).exitCode, 0);
    EXPECT_EQ(Of({"--value", "x??y"}).exitCode, 1);
    EXPECT_EQ(Of({"--value", "*\xF0\x9F\x9A\x80*"}).exitCode, 0);
}

TEST_F(Query, ManyStars_EndSoon)
{
    WriteFile("policy.xml", std::string(20'000, 'a'));
    EXPECT_EQ(Of({"--value", "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b"}).exitCode, 1);
}

TEST_F(Query, ManyFiles_AreReportedInTheOrderOfTheArguments)
{
    std::vector<std::string> arguments = {"query"};
    std::string expected;
    for (int i = 60; i > 0; --i) {
        const std::string name = std::to_string(i) + ".xml";
        WriteFile(name, std::to_string(i));
        arguments.push_back(name);
        expected += name + ": policy P General/Interval: \"" + std::to_string(i) + "\"\n";
    }
    for (const char* jobs : {"1", "3", "64"}) {
        std::vector<std::string> withJobs = arguments;
        withJobs.insert(withJobs.end(), {"--jobs", jobs});
        EXPECT_EQ(Out(withJobs), expected) << jobs;
    }
}

TEST_F(Query, FileThatCannotBeRead_IsAnErrorAndTheOthersGoOn)
{
    WriteFile("one.xml", "1");
    WriteFile("three.xml", "3");
    Folder().Write(u"two.xml", "<a>\n  <b></a>");
    const ToolRun run = Tool({"query", "missing.xml", "one.xml", "two.xml", "three.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.out, "one.xml: policy P General/Interval: \"1\"\nthree.xml: policy P General/Interval: \"3\"\n");
    EXPECT_THAT(run.messages,
                MatchesPattern("missing\\.xml: The file does not exist\\. \\[FileNotFound, 0x80070002\\]\n"
                               "two\\.xml:2:[0-9]+: .* \\[SyntaxError, 0xFFFFFBAE\\]\n"));
    const json results = json::parse(Tool({"query", "missing.xml", "one.xml", "two.xml", "--json"}).out).at("results");
    ASSERT_EQ(results.size(), 3U);
    EXPECT_EQ(results[0].at("error").at("code"), "80070002");
    EXPECT_EQ(results[1].at("value"), "1");
    EXPECT_EQ(results[2].at("error").at("line"), 2);
}

TEST_F(Query, OneJob_KeepsNothingOfAFileForTheNextOnes)
{
    Folder().Write(u"a.xml", SmallFile("<Product SoftwareID='Product A'><S name='General'><s name='Interval'>1</s></S>"
                                       "</Product>"));
    WriteFile("b.xml", "2");
    Folder().Write(u"broken.xml", "<a><b></a>");
    for (const char* name : {"Interval", "Int*"}) {
        const ToolRun run = Tool({"query", "a.xml", "b.xml", "broken.xml", "b.xml", "missing.xml", "a.xml", "--jobs",
                                  "1", "--name", name, "--section", "General"});
        EXPECT_EQ(run.out,
                  "a.xml: policy Product A General/Interval: \"1\"\nb.xml: policy P General/Interval: \"2\"\n"
                  "b.xml: policy P General/Interval: \"2\"\na.xml: policy Product A General/Interval: \"1\"\n")
            << name;
        EXPECT_EQ(run.exitCode, 3);
    }
}

TEST_F(Query, IDWithoutWildcards_FindsItsPolicyThenItsTasks)
{
    const std::string found =
        "policy.xml: policy PRODUCTA1000 Schedule/AtStart: \"p\"\n"
        "policy.xml: task PRODUCTA1000 two Schedule/AtStart: \"2\"\n"
        "policy.xml: task PRODUCTA1000 one Schedule/AtStart: \"1\"\n";
    const auto section = [](const std::string& value) {
        return "<S name='Schedule'><s name='AtStart'>" + value + "</s></S>";
    };
    const auto task = [&](const std::string& id, const std::string& value) {
        return "<TaskGroup SoftwareID='PRODUCTA1000' TaskID='" + id + "'><Task>" + section(value) +
               "</Task></TaskGroup>";
    };
    Folder().Write(u"policy.xml", "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='PRODUCTA1000'>" +
                                      section("p") + "</Product><Product SoftwareID='Other'>" + section("o") +
                                      "</Product></Policy></PolicyGroup></PolicyRoot><TaskRoot>" + task("two", "2") +
                                      task("one", "1") + "</TaskRoot></R>");
    for (const char* id : {"PRODUCTA1000", "PRODUCTA100?"}) {
        EXPECT_EQ(Of({"--software", id, "--section", "Schedule", "--name", "AtStart"}).out, found) << id;
        EXPECT_EQ(Of({"--software", id, "--section", "Schedule"}).out, found) << id;
        EXPECT_EQ(Of({"--software", id, "--task", "one", "--name", "AtStart", "--section", "Schedule"}).out,
                  "policy.xml: task PRODUCTA1000 one Schedule/AtStart: \"1\"\n")
            << id;
        EXPECT_EQ(Of({"--software", id, "--section", "Schedule", "--name", "AtStart", "--value", "?"}).out, found);
        EXPECT_EQ(Of({"--software", id, "--section", "Schedule", "--name", "AtStart", "--value", "p"}).out,
                  found.substr(0, found.find('\n') + 1));
    }
    EXPECT_EQ(Of({"--software", "None", "--section", "Schedule", "--name", "AtStart"}).exitCode, 1);
    EXPECT_EQ(Of({"--software", "None"}).exitCode, 1);
}

TEST_F(Query, Json_HasEveryMatchWithEveryMember)
{
    const ToolRun run = Of({"--value", "1", "--section", "*e*", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    const json parsed = json::parse(run.out);
    EXPECT_EQ(parsed.at("schema"), 1);
    const json expected = {{{"file", "policy.xml"},
                            {"softwareId", "PRODUCTA1000"},
                            {"taskId", nullptr},
                            {"section", "General"},
                            {"name", "Enabled"},
                            {"value", "1"}},
                           {{"file", "policy.xml"},
                            {"softwareId", "PRODUCTB2000"},
                            {"taskId", "{task-1}"},
                            {"section", "Schedule"},
                            {"name", "AtStart"},
                            {"value", "1"}}};
    EXPECT_EQ(parsed.at("results"), expected);
    const ToolRun nothing = Of({"--name", "no", "--json"});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_EQ(json::parse(nothing.out).at("results"), json::array());
}

TEST_F(Query, Table_HasSixColumnsWhateverTheValuesAre)
{
    WriteFile("policy.xml", "a&#9;b&#10;c\\");
    EXPECT_EQ(Out({"query", "policy.xml", "--tsv"}), "policy.xml\tP\t\tGeneral\tInterval\ta\\tb\\nc\\\\\n");
}

TEST_F(Query, Count_ListsTheValueOfMostFilesFirst)
{
    std::vector<std::string> arguments = {"query", "--name", "Interval", "--count"};
    for (int i = 0; i < 9; ++i) {
        const std::string name = std::to_string(i) + ".xml";
        WriteFile(name, i == 0 ? "7" : i < 4 ? "b" : "a");
        arguments.push_back(name);
    }
    arguments.push_back("policy.xml");
    EXPECT_EQ(Out(arguments), "\"a\": 5 files\n\"b\": 3 files\n\"7\": 1 file\n(none): 1 file\n");
}

TEST_F(Query, Count_CountsAFileOnceForAValue)
{
    EXPECT_EQ(Out({"query", "policy.xml", "--value", "1", "--count"}), "\"1\": 1 file\n");
    const ToolRun nothing = Of({"--name", "no", "--count"});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_EQ(nothing.out, "(none): 1 file\n");
}

TEST_F(Query, FormsExcludeEachOther)
{
    for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{
             {"--json", "--tsv"}, {"--json", "--count"}, {"--tsv", "--count"}, {"--jobs", "0"}, {"--jobs", "65"}}) {
        EXPECT_THAT(Of(options), Fails(2, testing::Not(""))) << testing::PrintToString(options);
    }
}

}  // namespace
}  // namespace zupm::test
