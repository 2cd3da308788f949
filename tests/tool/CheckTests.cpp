#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;

class Check : public ToolTest {};

TEST_F(Check, SaysNothingAboutASoundFile)
{
    EXPECT_EQ(Out({"check", "policy.xml"}), "");
}

TEST_F(Check, PrintsCountsOnRequest)
{
    const ToolRun run = Tool({"check", "--verbose", "policy.xml"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages, "policy.xml: ok: 3 policies, 3 tasks, 10 sections, 18 settings\n");
}

TEST_F(Check, PrintsFileLineColumnAndMessageForABrokenFile)
{
    (void)Folder().Write(u"broken.xml", "<a>\n  <ä></b>\n</a>\n");
    EXPECT_THAT(Tool({"check", "broken.xml"}), Fails(3, MatchesPattern("broken\\.xml:2:[0-9]+: .+\n")));
}

TEST_F(Check, PrintsTheMessageAloneWhenThereIsNoPosition)
{
    EXPECT_THAT(Tool({"check", "none.xml"}), Fails(3, "none.xml: The file does not exist.\n"));
}

TEST_F(Check, GoesOnAfterABrokenFile)
{
    (void)Folder().Write(u"broken.xml", "<a>");
    const ToolRun run = Tool({"check", "--verbose", "broken.xml", "policy.xml", "none.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages, MatchesPattern("broken\\.xml:1:[0-9]+: .+\npolicy\\.xml: ok: .+\nnone\\.xml: .+\n"));
}

TEST_F(Check, WarnsOfEntriesThatNobodyReaches)
{
    (void)Folder().Write(u"twice.xml",
                         SmallFile("<Product SoftwareID='P'>\n<Section name='S'>\n<Setting name='a'/>\n"
                                   "<Setting name='a'/>\n</Section>\n<Section name='S'/>\n</Product>\n"
                                   "<Product SoftwareID='P'/>\n",
                                   "<TaskGroup SoftwareID='P' TaskID='T'><Task/>\n <Task/>\n</TaskGroup>\n"));
    const ToolRun run = Tool({"check", "twice.xml"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, R"(twice.xml:8:1: warning: setting a of section S occurs again; only the first is used
twice.xml:10:1: warning: section S occurs again; both are read as one
twice.xml:12:1: warning: policy P occurs again; only the first is used
twice.xml:18:2: warning: task P T occurs again; only the first is used
)");
}

TEST_F(Check, PrintsJsonForEveryFile)
{
    (void)Folder().Write(u"broken.xml", "<a>\n<b></a>");
    const ToolRun run = Tool({"check", "--json", "policy.xml", "broken.xml", "none.xml"});
    EXPECT_EQ(run.exitCode, 3);
    const json reports = json::parse(run.out);
    ASSERT_EQ(reports.size(), 3u);
    EXPECT_EQ(reports[0], json::parse(R"({"file": "policy.xml", "ok": true, "policies": 3, "tasks": 3,
        "sections": 10, "settings": 18, "warnings": []})"));
    EXPECT_EQ(reports[1]["ok"], false);
    EXPECT_EQ(reports[1]["line"], 2);
    EXPECT_EQ(reports[2]["line"], nullptr);
    EXPECT_EQ(reports[2]["message"], "The file does not exist.");
}

TEST_F(Check, CountsColumnsOfTheFileInCharacters)
{
    (void)Folder().Write(u"twice.xml", SmallFile("<!-- ü🚀 --><Product SoftwareID='P'/><Product SoftwareID='P'/>\n"));
    EXPECT_THAT(Tool({"check", "twice.xml"}).messages, testing::StartsWith("twice.xml:5:37: warning: policy P"));
}

}  // namespace
}  // namespace zupm::test
