#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Check : public ToolTest {};

TEST_F(Check, PrintsNothingAboutASoundFile)
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

TEST_F(Check, PrintsThePositionOfInvalidBytes)
{
    using namespace std::string_literals;
    const struct {
        std::string bytes;
        const char* place;
    } rows[] = {
        {"<a>\n ü\xFF</a>", "2:3"},
        {"\xEF\xBB\xBF<a>\r\n\xC3", "2:1"},
        {"\xFF", "1:1"},
        {"\xFF\xFE<\0a\0>\0\n\0 \0\x00\xD8<\0"s, "2:2"},
        {"\xFE\xFF\0<\0a\0>\0\n\0 \0"s, "2:2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.place);
        (void)Folder().Write(u"broken.xml", row.bytes);
        EXPECT_THAT(Tool({"check", "broken.xml"}),
                    Fails(3, "broken.xml:" + std::string(row.place) +
                                 ": The text is not valid in its encoding, or the encoding cannot hold it.\n"));
        EXPECT_THAT(Tool({"show", "broken.xml"}), Fails(3, HasSubstr("zupolicy: broken.xml:" + std::string(row.place) +
                                                                     ": The text is not valid in")));
    }
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

TEST_F(Check, WarnsOfEntriesThatNoCallerCanReach)
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

TEST_F(Check, WarnsOfAFileThatMayNotBeAPolicyFile)
{
    (void)Folder().Write(u"page.html", "<!-- a\npage -->\n <html/>");
    const ToolRun run = Tool({"check", "page.html"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages,
              "page.html:3:2: warning: the file has neither a PolicyRoot nor a TaskRoot element; it may "
              "not be a policy file\n");
    for (const char* sound : {"<html><TaskRoot/></html>", "<html><PolicyRoot/></html>"}) {
        (void)Folder().Write(u"sound.xml", sound);
        EXPECT_EQ(Out({"check", "sound.xml"}), "") << sound;
    }
    (void)Folder().Write(u"deep.xml", "<html><x><PolicyRoot/></x></html>");
    EXPECT_THAT(Tool({"check", "deep.xml"}).messages, HasSubstr("warning"));
}

TEST_F(Check, WarnsOfVersionsThatAreNotNumbers)
{
    const auto file = [](const std::string& version) {
        return "<F>\n<PolicyRoot version='" + version + "'>\n<PolicyGroup>\n<Policy PolicyVersion='" + version +
               "'/>\n</PolicyGroup>\n</PolicyRoot>\n<TaskRoot version='" + version +
               "'>\n<TaskGroup SoftwareID='P' TaskID='T' TaskVersion='" + version + "'>\n<Task TaskVersion='" +
               version + "'/>\n</TaskGroup>\n</TaskRoot>\n</F>";
    };
    for (const char* number : {"0", "20240311081500", "-1", "+7", " 12 ", "18446744073709551615"}) {
        (void)Folder().Write(u"file.xml", file(number));
        EXPECT_EQ(Out({"check", "--strict", "file.xml"}), "") << number;
    }
    for (const char* text : {"", " ", "-", "12abc", "1 2", "0x10", "1.5", "v1"}) {
        (void)Folder().Write(u"file.xml", file(text));
        const std::string what = " is not a number: \"" + std::string(text) + "\"\n";
        EXPECT_EQ(Tool({"check", "file.xml"}).messages, "file.xml:2:1: warning: attribute version" + what +
                                                            "file.xml:4:1: warning: attribute PolicyVersion" + what +
                                                            "file.xml:7:1: warning: attribute version" + what +
                                                            "file.xml:8:1: warning: attribute TaskVersion" + what +
                                                            "file.xml:9:1: warning: attribute TaskVersion" + what);
    }
}

TEST_F(Check, FailsOnWarningsWithStrict)
{
    (void)Folder().Write(u"page.html", "<html/>");
    EXPECT_EQ(Tool({"check", "page.html"}).exitCode, 0);
    EXPECT_EQ(Tool({"check", "--strict", "page.html", "policy.xml"}).exitCode, 3);
    EXPECT_EQ(Tool({"check", "--strict", "policy.xml"}).exitCode, 0);
    const ToolRun run = Tool({"check", "--strict", "--json", "page.html"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(json::parse(run.out)["files"][0]["warnings"].size(), 1u);
}

TEST_F(Check, CutsLongNamesInWarnings)
{
    (void)Folder().Write(u"long.xml", SmallFile("<Product SoftwareID='P'><Section name='" + std::string(5000, 's') +
                                                "'><Setting name='a'/><Setting name='a'/></Section></Product>"));
    EXPECT_THAT(Tool({"check", "long.xml"}).messages, HasSubstr(" of section " + std::string(200, 's') + "... occurs"));
}

TEST_F(Check, EscapesNamesInWarnings)
{
    (void)Folder().Write(u"odd.xml", SmallFile("<Product SoftwareID='a&#10;b&#x1F5D3;&#x202E;'/><Product "
                                               "SoftwareID='a&#10;b&#x1F5D3;&#x202E;'/>"));
    EXPECT_THAT(Tool({"check", "odd.xml"}).messages, HasSubstr("warning: policy a\\nb🗓\\u202e occurs again"));
}

TEST_F(Check, FindsRepeatedSettingsInSectionsThatAreReadAsOne)
{
    (void)Folder().Write(u"twice.xml",
                         SmallFile("<Product SoftwareID='P'><Section name='S'><Setting name='a'/></Section><Section "
                                   "name='T'><Setting name='a'/></Section>\n<Section name='S'>\n<Setting "
                                   "name='a'/></Section></Product><Product SoftwareID='Q'><Section name='S'><Setting "
                                   "name='a'/></Section></Product>"));
    EXPECT_EQ(Tool({"check", "--verbose", "twice.xml"}).messages,
              "twice.xml:6:1: warning: section S occurs again; both are read as one\n"
              "twice.xml:7:1: warning: setting a of section S occurs again; only the first is used\n"
              "twice.xml: ok: 2 policies, 0 tasks, 3 sections, 3 settings\n");
}

TEST_F(Check, PrintsJsonForEveryFile)
{
    (void)Folder().Write(u"broken.xml", "<a>\n<b></a>");
    const ToolRun run = Tool({"check", "--json", "policy.xml", "broken.xml", "none.xml"});
    EXPECT_EQ(run.exitCode, 3);
    const json reports = json::parse(run.out)["files"];
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
