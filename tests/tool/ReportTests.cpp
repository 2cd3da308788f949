// Pages of HTML: what is in them as data, and how they are written. tests/page looks at them in a browser.
#include <nlohmann/json.hpp>

#include <filesystem>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// The text between two marks, which both occur.
std::string Between(const std::string& text, const std::string& begin, const std::string& end)
{
    const std::size_t from = text.find(begin);
    EXPECT_NE(from, std::string::npos) << begin;
    const std::size_t to = text.find(end, from + begin.size());
    EXPECT_NE(to, std::string::npos) << end;
    return text.substr(from + begin.size(), to - from - begin.size());
}

std::string DataTextOf(const std::string& page)
{
    return Between(page, "<script type=\"application/json\" id=\"data\">", "</script>");
}

class Report : public ToolTest {
protected:
    /// What the page about these files holds.
    [[nodiscard]] json DataOf(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "report");
        return json::parse(DataTextOf(Tool(arguments).out));
    }
    void Write(std::u16string_view name, const std::string& policyContent, const std::string& tasks = "") const
    {
        Folder().Write(name, SmallFile(policyContent, tasks));
    }
};

/// What a file of the data has, as lines "softwareId [taskId] kind section name = value".
std::vector<std::string> ContentsOf(const json& data, std::size_t number)
{
    const auto text = [&](const json& place) {
        return data.at("texts").at(place.get<std::size_t>()).get<std::string>();
    };
    const json& file = data.at("files").at(number);
    const json& shape = data.at("shapes").at(file.at("shape").get<std::size_t>());
    EXPECT_EQ(shape.size(), file.at("values").size());
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const json& key = data.at("keys").at(shape[i].get<std::size_t>());
        const json& entry = data.at("entries").at(key[0].get<std::size_t>());
        constexpr const char* kKinds[] = {"version", "field", "section", "setting"};
        lines.push_back(text(entry[0]) + (entry.size() > 1 ? " " + text(entry[1]) : "") + " " +
                        kKinds[key[1].get<std::size_t>()] + " " + text(key[2]) + " " + text(key[3]) + " = " +
                        text(file.at("values")[i]));
    }
    return lines;
}

TEST_F(Report, Data_HasWhatCallersFind)
{
    Write(u"one.xml",
          "<Product SoftwareID='P' PolicyVersion='7'><S name='A'><s name='n'>1</s><s name='n'>2</s></S><S name='B'/>"
          "<S name='A'><s name='m'>3</s></S></Product>",
          "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='D' TaskType='Y' Platforms='W' CreatorID='C' "
          "TaskPriority='1'><Task TaskVersion='9'><S name='Task'><s name='TaskName'>x</s></S><S name='A'>"
          "<s name='n'>4</s></S></Task></TaskGroup>");
    const json data = DataOf({"one.xml"});
    EXPECT_EQ(data.at("schema"), 1);
    EXPECT_EQ(data.at("kind"), "files");
    const std::vector<std::string> contents = ContentsOf(data, 0);
    const std::vector<std::string> rest(contents.begin() + 1, contents.end());
    EXPECT_THAT(contents[0], testing::StartsWith("P version   = "));
    EXPECT_EQ(rest, (std::vector<std::string>{
                        "P setting A n = 1", "P setting A m = 3", "P section B  = ", "P T version   = 9",
                        "P T field  displayName = D", "P T field  type = Y", "P T field  platforms = W",
                        "P T field  priority = 1", "P T field  creator = C", "P T setting A n = 4"}));
}

TEST_F(Report, ATextThatManyFilesHave_IsInThePageOnce)
{
    const std::string value(500, 'v');
    std::vector<std::string> names = {"report"};
    for (int i = 0; i < 40; ++i) {
        const std::string name = std::to_string(i) + ".xml";
        Write(std::u16string(name.begin(), name.end()),
              "<Product SoftwareID='P'><S name='A'><s name='n'>" + value + "</s></S></Product>");
        names.push_back(name);
    }
    const std::string page = Out(names);
    const std::string text = DataTextOf(page);
    EXPECT_EQ(text.find(value), text.rfind(value));
    const json data = json::parse(text);
    EXPECT_EQ(data.at("shapes").size(), 1U);
    ASSERT_EQ(data.at("files").size(), 40U);
    for (std::size_t i = 0; i < 40; ++i) {
        EXPECT_EQ(data.at("texts")[data.at("files")[i].at("name").get<std::size_t>()], names[i + 1]);
        EXPECT_EQ(ContentsOf(data, i).back(), "P setting A n = " + value);
    }
}

TEST_F(Report, NoTextOfAFile_CanEndTheDataOrBeginAComment)
{
    const std::string hostile = "</script><script>alert(1)</script><!--<script>-->]]>&lt;\xE2\x80\xA8\xE2\x80\xA9\"'\\";
    std::string escaped;
    for (const char c : hostile) {
        escaped += c == '<'    ? "&lt;"
                   : c == '&'  ? "&amp;"
                   : c == '\'' ? "&apos;"
                   : c == '>'  ? "&gt;"
                               : std::string(1, c);
    }
    Write(u"one.xml", "<Product SoftwareID='" + escaped + "'><S name='" + escaped + "'><s name='" + escaped + "'>" +
                          escaped + "</s></S></Product>");
    const std::string page = Out({"report", "one.xml", "--title", hostile});
    const std::string text = DataTextOf(page);
    EXPECT_THAT(text, Not(HasSubstr("<")));
    EXPECT_THAT(text, Not(HasSubstr(">")));
    EXPECT_THAT(text, Not(HasSubstr("\xE2\x80\xA8")));
    EXPECT_THAT(text, Not(HasSubstr("\xE2\x80\xA9")));
    const json data = json::parse(text);
    EXPECT_EQ(ContentsOf(data, 0).back(), hostile + " setting " + hostile + " " + hostile + " = " + hostile);
    EXPECT_EQ(data.at("title"), hostile);
    EXPECT_EQ(Between(page, "<title>", "</title>"),
              "&lt;/script&gt;&lt;script&gt;alert(1)&lt;/script&gt;&lt;!--&lt;script&gt;--&gt;]]&gt;&amp;lt;"
              "\\u2028\\u2029&quot;'\\");
}

TEST_F(Report, ThePage_LoadsNothingAndRunsOnlyItsOwnScript)
{
    const std::string page = Out({"report", "policy.xml"});
    EXPECT_THAT(page, testing::StartsWith("<!doctype html>"));
    EXPECT_THAT(Between(page, "<meta http-equiv=\"Content-Security-Policy\" content=\"", "\">"),
                MatchesPattern("default-src 'none'; script-src 'sha256-[A-Za-z0-9+/]{43}='; "
                               "style-src 'sha256-[A-Za-z0-9+/]{43}='; base-uri 'none'; form-action 'none'"));
    EXPECT_THAT(page, Not(HasSubstr("unsafe")));
    EXPECT_THAT(page, Not(HasSubstr("http://")));
    EXPECT_THAT(page, Not(HasSubstr("https://")));
    EXPECT_THAT(page, Not(HasSubstr("innerHTML")));
    EXPECT_THAT(page, Not(HasSubstr(" style=\"")));
    EXPECT_THAT(page, Not(HasSubstr("@policy@")));
}

TEST_F(Report, Warnings_HaveTheirPlaces)
{
    Write(u"one.xml", "\n<Product SoftwareID='P'/>\n<Product SoftwareID='P'/>");
    const json problems = DataOf({"one.xml"}).at("files")[0].at("problems");
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0][0], 1);
    EXPECT_EQ(problems[0][1], 7);
    EXPECT_THAT(problems[0][3].get<std::string>(), HasSubstr("occurs again"));
}

TEST_F(Report, AFloodOfWarnings_IsCounted)
{
    std::string products;
    for (int i = 0; i < 1201; ++i) {
        products += "<Product SoftwareID='P'/>";
    }
    Write(u"one.xml", products);
    const json file = DataOf({"one.xml"}).at("files")[0];
    EXPECT_EQ(file.at("problems").size(), 1000U);
    EXPECT_EQ(file.at("moreProblems"), 200);
}

TEST_F(Report, AFileThatCannotBeRead_IsInThePageAndOnStandardError)
{
    Folder().Write(u"broken.xml", "<a>\n  <b></a>");
    const ToolRun run = Tool({"report", "broken.xml", "policy.xml", "missing.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages,
                MatchesPattern("broken\\.xml:2:[0-9]+: .* \\[SyntaxError, 0xFFFFFBAE\\]\n"
                               "missing\\.xml: The file does not exist\\. \\[FileNotFound, 0x80070002\\]\n"));
    const json files = json::parse(DataTextOf(run.out)).at("files");
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0].at("error").at("line"), 2);
    EXPECT_EQ(files[0].at("error").at("name"), "SyntaxError");
    EXPECT_FALSE(files[1].contains("error"));
    EXPECT_EQ(files[2].at("error").at("code"), "80070002");
    EXPECT_FALSE(files[2].contains("shape"));
}

TEST_F(Report, Order_IsThatOfTheArgumentsWhateverTheJobsAre)
{
    std::vector<std::string> names;
    for (int i = 30; i > 0; --i) {
        names.push_back(std::to_string(i) + ".xml");
        Write(std::u16string(names.back().begin(), names.back().end()), "<Product SoftwareID='" + names.back() + "'/>");
    }
    for (const char* jobs : {"1", "5", "64"}) {
        std::vector<std::string> arguments = names;
        arguments.insert(arguments.end(), {"--jobs", jobs});
        const json data = DataOf(arguments);
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(data.at("texts")[data.at("files")[i].at("name").get<std::size_t>()], names[i]) << jobs;
            EXPECT_THAT(ContentsOf(data, i), testing::ElementsAre(testing::StartsWith(names[i] + " version")));
        }
    }
}

TEST_F(Report, Output_ReplacesAFileInOneStep)
{
    Folder().Write(u"report.html", "old");
    EXPECT_EQ(Out({"report", "policy.xml", "-o", "report.html"}), "");
    EXPECT_THAT(Bytes(u"report.html"), testing::StartsWith("<!doctype html>"));
    EXPECT_EQ(Out({"report", "policy.xml", "--output", "other.html"}), "");
    EXPECT_THAT(Bytes(u"other.html"), testing::EndsWith("</html>\n"));
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"other.html", "policy.xml", "report.html"}));
    EXPECT_THAT(Out({"report", "policy.xml", "-o", "-"}), testing::StartsWith("<!doctype html>"));
}

TEST_F(Report, Output_ThatCannotBeWritten_LeavesEverythingAsItWas)
{
    std::filesystem::create_directory(Folder().Folder() / "folder");
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"report", "policy.xml", "-o", "folder"}), Fails(3, HasSubstr("folder: ")));
    EXPECT_THAT(Tool({"report", "policy.xml", "-o", "missing/x.html"}), Fails(3, HasSubstr("missing/x.html: ")));
    EXPECT_THAT(Tool({"report", "policy.xml", "-o", "./policy.xml"}),
                Fails(2, HasSubstr("is one of the files that are read")));
    Folder().Write(u"rules.json", "{}");
    EXPECT_THAT(Tool({"report", "policy.xml", "--rules", "rules.json", "-o", "./rules.json"}),
                Fails(2, HasSubstr("is one of the files that are read")));
    EXPECT_EQ(Bytes(u"rules.json"), "{}");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"folder", "policy.xml", "rules.json"}));
}

TEST_F(Report, WrongLines_AreRefused)
{
    EXPECT_THAT(Tool({"report"}), Fails(2, Not("")));
    EXPECT_THAT(Tool({"report", "policy.xml", "--jobs", "0"}), Fails(2, Not("")));
    EXPECT_THAT(Tool({"diff", "policy.xml", "policy.xml", "-o", "x.html"}), Fails(2, HasSubstr("--html")));
    EXPECT_THAT(Tool({"diff", "policy.xml", "policy.xml", "--html", "--json"}), Fails(2, HasSubstr("--json")));
}

TEST_F(Report, DiffPage_HasBothFilesAndTheEdits)
{
    Write(u"old.xml", "<Product SoftwareID='P'><S name='A'><s name='n'>1</s></S></Product>");
    Write(u"new.xml", "<Product SoftwareID='P'><S name='A'><s name='n'>2</s></S></Product>");
    const ToolRun run = Tool({"diff", "old.xml", "new.xml", "--html"});
    EXPECT_EQ(run.exitCode, 1);
    const json data = json::parse(DataTextOf(run.out));
    EXPECT_EQ(data.at("kind"), "differences");
    EXPECT_EQ(data.at("files").size(), 2U);
    EXPECT_EQ(ContentsOf(data, 0).back(), "P setting A n = 1");
    EXPECT_EQ(ContentsOf(data, 1).back(), "P setting A n = 2");
    EXPECT_EQ(data.at("edits"), Tool({"diff", "old.xml", "new.xml", "--ignore-versions", "--json"}).out);
    EXPECT_EQ(Tool({"diff", "old.xml", "old.xml", "--html"}).exitCode, 0);
    EXPECT_EQ(Tool({"diff", "old.xml", "new.xml", "--html", "-o", "diff.html"}).exitCode, 1);
    EXPECT_THAT(Bytes(u"diff.html"), testing::StartsWith("<!doctype html>"));
    EXPECT_EQ(Tool({"diff", "old.xml", "missing.xml", "--html", "-o", "no.html"}).exitCode, 3);
    EXPECT_FALSE(Folder().Has(u"no.html"));
}

TEST_F(Report, Rules_AreCheckedAndTheirPlacesGiven)
{
    Write(u"one.xml", "\n<Product SoftwareID='P'><S name='A'><s name='n'>1</s>\n<s name='n'>1</s></S></Product>");
    Folder().Write(u"rules.json",
                   R"({"properties": {"policies": {"properties": {"P": {"properties": {"A": {
                       "required": ["m"], "properties": {"n": {"const": "2", "x-severity": "warning"}}}}}}}}})");
    const ToolRun run = Tool({"report", "one.xml", "--rules", "rules.json"});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    const json problems = json::parse(DataTextOf(run.out)).at("files")[0].at("problems");
    ASSERT_EQ(problems.size(), 3U);
    std::vector<std::string> lines;
    for (const json& problem : problems) {
        lines.push_back(problem[0].dump() + " " + problem[1].dump() + " " + problem[3].get<std::string>());
    }
    EXPECT_THAT(lines, testing::UnorderedElementsAre(testing::StartsWith("0 6 policy P A/m: "),
                                                     testing::StartsWith("1 6 policy P A/n: "),
                                                     testing::AllOf(testing::StartsWith("1 7 "), HasSubstr("again"))));
    EXPECT_THAT(Tool({"report", "one.xml", "--rules", "one.xml", "-o", "x.html"}), Fails(3, HasSubstr("one.xml:1:1")));
    EXPECT_FALSE(Folder().Has(u"x.html"));
}

TEST_F(Report, HiddenValues_AreNowhereInThePage)
{
    const std::string tasks =
        "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='Secret3' TaskType='Y' TaskPriority='1'><Task>"
        "<S name='Task'><s name='TaskName'>Secret3</s></S><S name='A'><s name='Password'>Secret4</s></S></Task>"
        "</TaskGroup>";
    Write(u"one.xml",
          "<Product SoftwareID='P'><S name='A'><s name='Password'>Secret1</s><s name='n'>open</s></S></Product>",
          tasks);
    Write(u"two.xml",
          "<Product SoftwareID='P'><S name='A'><s name='Password'>Secret2</s><s name='n'>open</s></S></Product>",
          tasks);
    Folder().Write(u"rules.json",
                   R"({"properties": {"policies": {"properties": {"P": {"properties": {"A": {
                       "properties": {"Password": {"const": "2"}}}}}}}}})");
    const std::string page =
        Out({"report", "one.xml", "two.xml", "--redact", "Pass*", "--redact", "displayName", "--rules", "rules.json"});
    EXPECT_THAT(page, Not(HasSubstr("Secret")));
    const json data = json::parse(DataTextOf(page));
    EXPECT_THAT(ContentsOf(data, 0),
                testing::IsSupersetOf({"P setting A Password = ***", "P setting A n = open",
                                       "P T field  displayName = ***", "P T setting A Password = ***"}));
    std::size_t hidden = 0;
    for (const json& key : data.at("keys")) {
        hidden += key.size() == 5 ? 1U : 0U;
    }
    EXPECT_EQ(hidden, 3U);
    EXPECT_EQ(data.at("files")[0].at("values")[1], data.at("files")[1].at("values")[1]);
    EXPECT_EQ(data.at("files")[0].at("problems").size(), 1U);

    const ToolRun diff = Tool({"diff", "one.xml", "two.xml", "--html", "--redact", "Pass*", "--redact", "displayName"});
    EXPECT_EQ(diff.exitCode, 1);
    EXPECT_THAT(diff.out, Not(HasSubstr("Secret")));
    const json both = json::parse(DataTextOf(diff.out));
    EXPECT_NE(both.at("files")[0].at("values")[1], both.at("files")[1].at("values")[1]);
    EXPECT_EQ(ContentsOf(both, 1)[1], "P setting A Password = ***");
}

TEST_F(Report, Json_SaysWhatIsInThePageAndWhichFilesAreNot)
{
    Write(u"one.xml", "<Product SoftwareID='P'/><Product SoftwareID='P'/>");
    Folder().Write(u"broken.xml", "<a>\n  <b></a>");
    const json sound = json::parse(Out({"report", "policy.xml", "one.xml", "-o", "page.html", "--json"}));
    EXPECT_EQ(sound, json::parse(R"({"schema": 1, "written": "page.html", "files": 2, "policies": 4, "tasks": 3,
                                     "problems": 1, "failures": []})"));
    EXPECT_THAT(Bytes(u"page.html"), testing::EndsWith("</html>\n"));
    const ToolRun run = Tool({"report", "broken.xml", "policy.xml", "-o", "page.html", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    const json failures = json::parse(run.out).at("failures");
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].at("error").at("file"), "broken.xml");
    EXPECT_EQ(failures[0].at("error").at("line"), 2);
    for (const char* const output : {"--output=-", "--jobs=1"}) {
        EXPECT_THAT(Tool({"report", "policy.xml", "--json", output}), Fails(2, HasSubstr("--json needs --output")));
    }
    EXPECT_EQ(json::parse(Tool({"report", "policy.xml", "--json", "-o", "none/x.html"}).out)["error"]["exit"], 3);
}

TEST_F(Report, RulesThatCannotBeRead_EndTheRunBeforeAnyFileIsRead)
{
    const ToolRun run = Tool({"report", "missing.xml", "--rules", "missing.json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages, HasSubstr("missing.json"));
    EXPECT_EQ(run.out, "");
}

TEST_F(Report, DiffPage_CountsVersionsUnlessTheyAreIgnored)
{
    Folder().Write(u"old.xml", "<F><PolicyRoot version='1'/><TaskRoot version='2'/></F>");
    Folder().Write(u"new.xml", "<F><PolicyRoot version='1'/><TaskRoot version='3'/></F>");
    const ToolRun run = Tool({"diff", "old.xml", "new.xml", "--html"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(json::parse(DataTextOf(run.out)).at("edits"), "");
    EXPECT_EQ(json::parse(DataTextOf(run.out)).at("ignoreVersions"), false);
    const ToolRun ignored = Tool({"diff", "old.xml", "new.xml", "--html", "--ignore-versions"});
    EXPECT_EQ(ignored.exitCode, 0);
    EXPECT_EQ(json::parse(DataTextOf(ignored.out)).at("ignoreVersions"), true);
}

}  // namespace
}  // namespace zupm::test
