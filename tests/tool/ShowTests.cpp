#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class Show : public ToolTest {};

TEST_F(Show, PrintsOnePolicyWithItsTasks)
{
    EXPECT_EQ(Out({"show", "policy.xml", "PRODUCTB2000"}), R"(File             policy.xml
Policy version   20240311081500
Task version     20240402060000
Assignment list  all;site=süd

Policy PRODUCTB2000
  Version          20240311081500
  [General]
    Enabled = 0
    LogLevel = 3
  [Proxy]

Task PRODUCTB2000 {task-1}
  Name             Inventory
  Type             Collect
  Platforms        LNX
  Priority         0
  Creator          SITEADMIN
  Version          20231201090000
  [Schedule]
    AtStart = 1
)");
}

TEST_F(Show, PrintsEveryPolicyAndTaskInTheFilesOrder)
{
    const json data = json::parse(Out({"show", "policy.xml", "--json"}));
    std::vector<std::string> ids;
    for (const json& policy : data["policies"]) {
        ids.push_back(policy["softwareId"]);
    }
    for (const json& task : data["tasks"]) {
        ids.push_back(task["softwareId"].get<std::string>() + task["taskId"].get<std::string>());
    }
    EXPECT_THAT(ids, testing::ElementsAre("PRODUCTA1000", "PRODUCTB2000", "PRODUCTC3000", "PRODUCTA1000{task-1}",
                                          "PRODUCTA1000{task-2}", "PRODUCTB2000{task-1}"));
}

TEST_F(Show, PrintsOneTaskAlone)
{
    const std::string out = Out({"show", "policy.xml", "PRODUCTA1000", "--task", "{task-2}"});
    EXPECT_THAT(out, HasSubstr("Task PRODUCTA1000 {task-2}\n  Name             定期更新 🗓\n"));
    EXPECT_THAT(out, HasSubstr("  Priority         -2\n"));
    EXPECT_THAT(out, Not(HasSubstr("Policy PRODUCTA1000")));
    EXPECT_THAT(out, Not(HasSubstr("{task-1}")));
}

TEST_F(Show, LeavesOutSettingsOnRequest)
{
    const std::string out = Out({"show", "policy.xml", "--names"});
    EXPECT_THAT(out, HasSubstr("Policy PRODUCTC3000\n"));
    EXPECT_THAT(out, Not(HasSubstr("[Limits]")));
    EXPECT_FALSE(json::parse(Out({"show", "policy.xml", "--names", "--json"}))["policies"][0].contains("sections"));
}

TEST_F(Show, PrintsValuesUnchangedAsJson)
{
    const json data = json::parse(Out({"show", "policy.xml", "PRODUCTC3000", "--json"}));
    EXPECT_EQ(data["file"], "policy.xml");
    EXPECT_EQ(data["policyVersion"], "20240311081500");
    EXPECT_EQ(data["taskVersion"], "20240402060000");
    EXPECT_EQ(data["assignmentList"], "all;site=süd");
    EXPECT_EQ(data["policies"][0]["sections"], json::parse(R"([{"name": "Limits", "settings": [
        {"name": "MaxThreads", "value": "8"}, {"name": "Comment", "value": "Zeile 1\r\nZeile 2"}]}])"));
    EXPECT_EQ(data["tasks"], json::array());
}

TEST_F(Show, EscapesWhatWouldMoveTheCursorOfATerminal)
{
    (void)Folder().Write(u"odd.xml", SmallFile("<Product SoftwareID='P'><Section name='S'><Setting name='a&#9;b'>"
                                               "1&#10;2&#13;\\&#x9b;31m</Setting></Section></Product>\n"));
    EXPECT_THAT(Out({"show", "odd.xml"}), HasSubstr("    a\\tb = 1\\n2\\r\\\\\\u009b31m\n"));
}

TEST_F(Show, ReadsByTheComponentsRules)
{
    (void)Folder().Write(u"odd.xml",
                         SmallFile("<Product SoftwareID='P'><Any name='S'><Other name='a'>1<x>no</x><!-- no "
                                   "-->2</Other><Nameless>no</Nameless></Any><Section name='S'><Setting "
                                   "name='a'>no</Setting><Setting name='b'>3</Setting></Section></Product>\n"
                                   "<Product SoftwareID='P'><Section name='no'/></Product>\n"));
    EXPECT_THAT(Out({"show", "odd.xml"}), testing::EndsWith("Policy P\n  [S]\n    a = 12\n    b = 3\n"));
}

TEST_F(Show, FailsWhenTheFilterNamesNothing)
{
    EXPECT_THAT(Tool({"show", "policy.xml", "PRODUCTX"}),
                Fails(1, "zupolicy: policy.xml: policy PRODUCTX and tasks of it: not in the file\n"));
    EXPECT_THAT(Tool({"show", "policy.xml", "PRODUCTC3000", "--task", "{task-1}"}),
                Fails(1, "zupolicy: policy.xml: task PRODUCTC3000 {task-1}: not in the file\n"));
}

TEST_F(Show, ShowsAFileWithoutEntries)
{
    (void)Folder().Write(u"empty.xml", "<PolicyFile/>");
    EXPECT_EQ(Out({"show", "empty.xml"}), "File             empty.xml\nPolicy version   0\nTask version     0\n");
}

}  // namespace
}  // namespace zupm::test
