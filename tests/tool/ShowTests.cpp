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

TEST_F(Show, EscapesInvisibleCharactersAndThoseThatChangeTheWritingDirection)
{
    const struct {
        const char* reference;
        const char* shown;
    } rows[] = {
        {"&#xAD;", R"(\u00ad)"},      {"&#x200B;", R"(\u200b)"},      {"&#x200D;", R"(\u200d)"},
        {"&#x200F;", R"(\u200f)"},    {"&#x2028;", R"(\u2028)"},      {"&#x2029;", R"(\u2029)"},
        {"&#x202A;", R"(\u202a)"},    {"&#x202E;", R"(\u202e)"},      {"&#x2066;", R"(\u2066)"},
        {"&#x2069;", R"(\u2069)"},    {"&#xFEFF;", R"(\ufeff)"},      {"&#x061C;", R"(\u061c)"},
        {"&#x3164;", R"(\u3164)"},    {"&#xE0041;", R"(\U000e0041)"}, {"&#x1D173;", R"(\U0001d173)"},
        {"&#x7F;", R"(\u007f)"},      {"&#x85;", R"(\u0085)"},        {"&#xA0;", "\xC2\xA0"},
        {"&#x2027;", "\xE2\x80\xA7"}, {"&#x202F;", "\xE2\x80\xAF"},   {"&#x1F680;", "\xF0\x9F\x9A\x80"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reference);
        const std::string in = "a" + std::string(row.reference) + "b";
        const std::string out = "a" + std::string(row.shown) + "b";
        (void)Folder().Write(
            u"odd.xml", SmallFile("<Product SoftwareID='" + in + "'><Section name='" + in + "'><Setting name='" + in +
                                  "'>" + in + "</Setting></Section></Product>\n"));
        EXPECT_THAT(Out({"show", "odd.xml"}),
                    HasSubstr("Policy " + out + "\n  [" + out + "]\n    " + out + " = " + out + "\n"));
    }
}

TEST_F(Show, ReadsEveryEncoding)
{
    const std::string body =
        "<F><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='P'><Section name='\xFC'>"
        "<Setting name='a'>\xE4\xDF</Setting></Section></Product></Policy></PolicyGroup>"
        "</PolicyRoot></F>";
    (void)Folder().Write(u"latin.xml", "<?xml version='1.0' encoding='iso-8859-1'?>" + body);
    EXPECT_THAT(Out({"show", "latin.xml"}), testing::EndsWith("Policy P\n  [ü]\n    a = äß\n"));
    const auto wide = [](const std::string& latin, bool littleEndian, bool hasSignature) {
        std::string bytes = !hasSignature ? "" : littleEndian ? "\xFF\xFE" : "\xFE\xFF";
        for (const char c : latin) {
            bytes += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
        }
        return bytes;
    };
    for (const bool littleEndian : {true, false}) {
        (void)Folder().Write(u"wide.xml", wide(body, littleEndian, true));
        EXPECT_THAT(Out({"show", "wide.xml"}), testing::EndsWith("Policy P\n  [ü]\n    a = äß\n"));
        (void)Folder().Write(u"wide.xml", wide("<?xml version='1.0' encoding='UTF-16'?>" + body, littleEndian, false));
        EXPECT_THAT(Out({"show", "wide.xml"}), testing::EndsWith("Policy P\n  [ü]\n    a = äß\n"));
    }
    (void)Folder().Write(u"signed.xml", "\xEF\xBB\xBF" + SmallFile("<Product SoftwareID='ü'/>"));
    EXPECT_THAT(Out({"show", "signed.xml"}), testing::EndsWith("Policy ü\n"));
}

TEST_F(Show, SkipsMarkupThatLooksLikeTags)
{
    (void)Folder().Write(
        u"odd.xml",
        "<?xml version='1.0'?><!DOCTYPE F [<!-- ' ]> --><!ELEMENT F ANY><?x ]> ' ?><!ATTLIST a b CDATA ']>'>]>\n"
        "<!-- <F> --><F a='>'><PolicyRoot  AssignmentList = \"'>\" ><?y <F> ?><PolicyGroup><Policy>"
        "<Product b='/>' SoftwareID = 'P&quot;&#x26;&#39;&lt;' ><Section\nname\t=\t'a\r\nb\tc'><Setting name='n'>"
        "1<![CDATA[<x>&amp;]]]>2\r\n3<!-- no -->\r4<x><y/></x>5&#13;&gt;</Setting ><Setting name='m'/></Section>"
        "</Product></Policy></PolicyGroup></PolicyRoot></F>\n<!-- end -->");
    EXPECT_THAT(Out({"show", "odd.xml"}),
                testing::EndsWith("Policy P\"&'<\n  [a b c]\n    n = 1<x>&amp;]2\\n3\\n45\\r>\n    m = \n"));
    EXPECT_EQ(Out({"get", "odd.xml", "P\"&'<", "a b c", "n"}), "1<x>&amp;]2\n3\n45\r>\n");
}

TEST_F(Show, QuotesInCommentsAndInstructionsOfADocumentTypeHaveNoEffect)
{
    for (const std::string inside : {"<!-- it's -->", "<?x it's?>", "<!ELEMENT F ANY>"}) {
        (void)Folder().Write(u"odd.xml", "<!DOCTYPE F [" + inside + "]>" +
                                             SmallFile("<Product SoftwareID='P'/><Product SoftwareID='Q'/>"));
        EXPECT_THAT(Out({"show", "odd.xml"}), testing::EndsWith("Policy P\n\nPolicy Q\n"));
    }
}

TEST_F(Show, ReadsByTheComponentsRules)
{
    (void)Folder().Write(u"odd.xml",
                         SmallFile("<Product SoftwareID='P'><Any name='S'><Other name='a'>1<x>no</x><!-- no "
                                   "-->2</Other><Nameless>no</Nameless></Any><Section name='S'><Setting "
                                   "name='a'>no</Setting><Setting name='b'>3</Setting></Section></Product>\n"
                                   "<Product SoftwareID='P'><Section name='no'/></Product>\n"));
    const ToolRun run = Tool({"show", "odd.xml"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, testing::EndsWith("Policy P\n  [S]\n    a = 12\n    b = 3\n"));
}

TEST_F(Show, MentionsEntriesThatNoCallerCanReach)
{
    (void)Folder().Write(u"twice.xml",
                         SmallFile("<Product SoftwareID='P'>\n<S name='S'><s name='a'/><s name='a'/></S></Product>\n"
                                   "<Product SoftwareID='Q'/>\n<Product SoftwareID='P'/>\n",
                                   "<TaskGroup SoftwareID='P' TaskID='T'><Task/>\n <Task/>\n</TaskGroup>\n"));
    const std::string policy = "twice.xml:8:1: warning: policy P occurs again; only the first is used\n";
    const std::string task = "twice.xml:14:2: warning: task P T occurs again; only the first is used\n";
    const struct {
        std::vector<std::string> more;
        std::string messages;
    } rows[] = {
        {{}, policy + task}, {{"P"}, policy + task}, {{"P", "--task", "T"}, task},
        {{"Q"}, ""},         {{"P", "--json"}, ""},  {{"P", "--quiet"}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.more));
        std::vector<std::string> line = {"show", "twice.xml"};
        line.insert(line.end(), row.more.begin(), row.more.end());
        const ToolRun run = Tool(line);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.messages, row.messages);
    }
}

TEST_F(Show, FailsWhenTheFilterMatchesNothing)
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
