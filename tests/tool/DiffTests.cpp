// Differences between the meanings of two files.
#include <nlohmann/json.hpp>

#include "EditsTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Diff : public EditsTest {
protected:
    /// The differences between two small files.
    [[nodiscard]] std::string Between(std::string_view before, std::string_view after) const
    {
        Folder().Write(u"old.xml", before);
        Folder().Write(u"new.xml", after);
        return Differences("old.xml", "new.xml");
    }
    /// The differences between two products.
    [[nodiscard]] std::string BetweenPolicies(const std::string& before, const std::string& after) const
    {
        return Between(SmallFile(Product(before)), SmallFile(Product(after)));
    }
    [[nodiscard]] std::string BetweenTasks(const std::string& before, const std::string& after) const
    {
        return Between(SmallFile("", Task(before)), SmallFile("", Task(after)));
    }

    static std::string Product(const std::string& content)
    {
        return "<Product SoftwareID='P'>" + content + "</Product>";
    }
    static std::string Task(const std::string& content)
    {
        return "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='D' TaskType='Y' Platforms='W' CreatorID='C' "
               "TaskPriority='1'><Task>" +
               content + "</Task></TaskGroup>";
    }
};

TEST_F(Diff, AFileAndItself_DoNotDiffer)
{
    EXPECT_EQ(Out({"diff", "policy.xml", "policy.xml"}), "");
    EXPECT_EQ(Out({"diff", "policy.xml", "policy.xml", "--json"}), "");
}

TEST_F(Diff, EveryKindOfDifference_IsOneLine)
{
    struct Row {
        const char* before;
        const char* after;
        const char* difference;
    };
    const Row rows[] = {
        {"<S name='A'><s name='n'>1</s></S>", "<S name='A'><s name='n'>2</s></S>", "~ policy P A/n: \"1\" -> \"2\"\n"},
        {"<S name='A'/>", "<S name='A'><s name='n'>2</s></S>", "+ policy P A/n: \"2\"\n"},
        {"<S name='A'><s name='n'>1</s></S>", "<S name='A'/>", "- policy P A/n: \"1\"\n"},
        {"", "<S name='A'/>", "+ policy P section A (empty)\n"},
        {"<S name='A'/>", "", "- policy P section A (empty)\n"},
        {"", "<S name='A'><s name='n'>1</s></S>", "+ policy P A/n: \"1\"\n"},
        {"<S name='A'><s name='n'>1</s></S>", "", "- policy P section A (1 setting)\n"},
        {"<S name='A'><s name='n'>1</s><s name='m'/></S>", "", "- policy P section A (2 settings)\n"},
        {"<S name='A'><s name='n'>1</s></S>", "<S name='a'><s name='n'>1</s></S>",
         "- policy P section A (1 setting)\n+ policy P a/n: \"1\"\n"},
        {"<S name='A'><s name='&#10;'>&#9;\\</s></S>", "<S name='A'><s name='&#10;'>\xE2\x80\xAE</s></S>",
         "~ policy P A/\\n: \"\\t\\\\\" -> \"\\u202e\"\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(BetweenPolicies(row.before, row.after), row.difference) << row.before << " " << row.after;
    }
}

TEST_F(Diff, WhatALookupDoesNotFind_IsNoDifference)
{
    struct Row {
        const char* before;
        const char* after;
    };
    const Row rows[] = {
        {"<S name='A'/><S name='B'/>", "<S name='B'/><S name='A'/>"},
        {"<S name='A'><s name='n'>1</s><s name='m'>2</s></S>", "<S name='A'><s name='m'>2</s><s name='n'>1</s></S>"},
        {"<S name='A'><s name='n'>1</s></S>", "<S name='A'><s name='n'>1</s><s name='n'>2</s></S>"},
        {"<S name='A'><s name='n'>1</s><s name='m'>2</s></S>",
         "<S name='A'><s name='n'>1</s></S><S name='A'><s name='m'>2</s></S>"},
        {"<S name='A'><s name='n'>&#65;</s></S>", "<!-- c -->\n<S name='A' x='1'><s name='n'><![CDATA[A]]></s></S>"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(BetweenPolicies(row.before, row.after), "") << row.before << " " << row.after;
        EXPECT_EQ(BetweenTasks(row.before, row.after), "") << row.before << " " << row.after;
    }
}

TEST_F(Diff, EntriesOfOneFileAlone_AreOneLineEach)
{
    const std::string one = SmallFile("<Product SoftwareID='A'/><Product SoftwareID='B'><S name='s'/></Product>");
    const std::string other = SmallFile("<Product SoftwareID='C'><S name='s'/><S name='t'/></Product>",
                                        "<TaskGroup SoftwareID='P' TaskID='T'><Task/></TaskGroup>");
    EXPECT_EQ(Between(one, other), "- policy A\n- policy B (1 section)\n+ policy C (2 sections)\n+ task P T\n");
    EXPECT_EQ(Between(other, one), "- policy C (2 sections)\n+ policy A\n+ policy B (1 section)\n- task P T\n");
}

TEST_F(Diff, FieldsOfATask_AreCompared)
{
    const std::string before = SmallFile("", Task(""));
    const std::string after = SmallFile("",
                                        "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='d' TaskType='y' "
                                        "Platforms='w' CreatorID='c' TaskPriority='-2'><Task/></TaskGroup>");
    EXPECT_EQ(Between(before, after),
              "~ task P T displayName: \"D\" -> \"d\"\n"
              "~ task P T type: \"Y\" -> \"y\"\n"
              "~ task P T platforms: \"W\" -> \"w\"\n"
              "~ task P T priority: \"1\" -> \"-2\"\n"
              "~ task P T creator: \"C\" -> \"c\"\n");
}

TEST_F(Diff, WhatTheComponentRepeatsOfATasksFields_IsNoDifference)
{
    const char* const repeated =
        "<S name='Task'><s name='TaskID'>T</s><s name='TaskName'>x</s><s name='TaskType'/><s name='Platforms'/>"
        "<s name='TaskPriority'>9</s></S><S name='General'><s name='TaskType'/><s name='wTaskType'/></S>";
    EXPECT_EQ(BetweenTasks("", repeated), "");
    EXPECT_EQ(BetweenTasks(repeated, "<S name='General'/>"), "");
    EXPECT_EQ(BetweenTasks("", "<S name='General'><s name='TaskName'>1</s></S>"),
              "+ task P T General/TaskName: \"1\"\n");
    EXPECT_EQ(BetweenPolicies("", "<S name='Task'><s name='TaskName'>x</s></S>"), "+ policy P Task/TaskName: \"x\"\n");
}

TEST_F(Diff, OrderIsThatOfTheOldFile_ThenOfTheNew)
{
    EXPECT_EQ(BetweenPolicies("<S name='B'><s name='2'>x</s><s name='1'>x</s></S><S name='A'><s name='n'>1</s></S>",
                              "<S name='D'><s name='n'>1</s></S><S name='C'><s name='n'>1</s></S>"
                              "<S name='A'><s name='n'>2</s></S><S name='B'><s name='4'>x</s><s name='3'>x</s></S>"),
              "- policy P B/2: \"x\"\n- policy P B/1: \"x\"\n+ policy P B/4: \"x\"\n+ policy P B/3: \"x\"\n"
              "~ policy P A/n: \"1\" -> \"2\"\n+ policy P D/n: \"1\"\n+ policy P C/n: \"1\"\n");
}

TEST_F(Diff, VersionsAndTheAssignmentList_AreDifferencesThatNoEditMakes)
{
    Folder().Write(u"old.xml", "<F><PolicyRoot version='1' AssignmentList='a'/><TaskRoot version='2'/></F>");
    Folder().Write(u"new.xml", "<F><PolicyRoot version='3' AssignmentList='b'/><TaskRoot version='4'/></F>");
    const ToolRun run = Tool({"diff", "old.xml", "new.xml"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out,
              "~ assignmentList: \"a\" -> \"b\"\n~ policyVersion: \"1\" -> \"3\"\n~ taskVersion: \"2\" -> \"4\"\n");
    EXPECT_EQ(Differences("old.xml", "new.xml"), "~ assignmentList: \"a\" -> \"b\"\n");
    const ToolRun edits = Tool({"diff", "old.xml", "new.xml", "--ignore-versions", "--json"});
    EXPECT_EQ(edits.out,
              "{\"schema\": 1, \"edit\": \"unsupported\", \"what\": \"assignmentList\", \"before\": \"a\", \"after\": "
              "\"b\"}\n");
    EXPECT_THAT(Apply(edits.out), Fails(3, HasSubstr("edits.jsonl:1:1: no edit can make this difference")));
}

TEST_F(Diff, Json_IsOneEditALine)
{
    Folder().Write(u"old.xml", SmallFile(Product("<S name='A'><s name='n'>1</s><s name='m'>1</s></S><S name='B'/>") +
                                             "<Product SoftwareID='Q'/>",
                                         Task("")));
    Folder().Write(u"new.xml",
                   SmallFile(Product("<S name='A'><s name='n'>\xC3\xBC\"</s><s name='k'/></S><S name='C'/>"),
                             "<TaskGroup SoftwareID='P' TaskID='U' DisplayName='D' TaskPriority='7'>"
                             "<Task><S name='A'><s name='n'>1</s></S></Task></TaskGroup>"));
    const ToolRun run = Tool({"diff", "old.xml", "new.xml", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(
        run.out,
        "{\"schema\": 1, \"edit\": \"set\", \"softwareId\": \"P\", \"section\": \"A\", \"name\": \"n\", "
        "\"value\": \"\xC3\xBC\\\"\", \"before\": \"1\"}\n"
        "{\"schema\": 1, \"edit\": \"absent\", \"softwareId\": \"P\", \"section\": \"A\", \"name\": \"m\", \"before\": "
        "\"1\"}\n"
        "{\"schema\": 1, \"edit\": \"set\", \"softwareId\": \"P\", \"section\": \"A\", \"name\": \"k\", \"value\": "
        "\"\", \"before\": null}\n"
        "{\"schema\": 1, \"edit\": \"absent\", \"softwareId\": \"P\", \"section\": \"B\"}\n"
        "{\"schema\": 1, \"edit\": \"set\", \"softwareId\": \"P\", \"section\": \"C\"}\n"
        "{\"schema\": 1, \"edit\": \"absent\", \"softwareId\": \"Q\"}\n"
        "{\"schema\": 1, \"edit\": \"absent\", \"softwareId\": \"P\", \"taskId\": \"T\"}\n"
        "{\"schema\": 1, \"edit\": \"create\", \"softwareId\": \"P\", \"taskId\": \"U\", \"displayName\": \"D\", "
        "\"type\": \"invalid\", \"platforms\": \"invalid\", \"priority\": \"7\", \"creator\": \"invalid\", "
        "\"sections\": [{\"name\": \"A\", \"settings\": [{\"name\": \"n\", \"value\": \"1\"}]}]}\n");
}

TEST_F(Diff, AnEntryWithoutAPlaceInTheOldFile_IsADifferenceThatNoEditMakes)
{
    Folder().Write(u"old.xml", "<F><PolicyRoot><PolicyGroup/></PolicyRoot></F>");
    Folder().Write(u"new.xml", SmallFile(Product(""), Task("")));
    EXPECT_EQ(Differences("old.xml", "new.xml"), "+ policy P\n+ task P T\n");
    const ToolRun edits = Tool({"diff", "old.xml", "new.xml", "--ignore-versions", "--json"});
    EXPECT_EQ(edits.exitCode, 1);
    EXPECT_EQ(edits.out,
              "{\"schema\": 1, \"edit\": \"unsupported\", \"what\": \"create\", \"softwareId\": \"P\", \"reason\": "
              "\"old.xml has no Policy element to put it in\"}\n"
              "{\"schema\": 1, \"edit\": \"unsupported\", \"what\": \"create\", \"softwareId\": \"P\", \"taskId\": "
              "\"T\", \"reason\": \"old.xml has no TaskRoot element to put it in\"}\n");
    EXPECT_THAT(Apply(edits.out),
                Fails(3, HasSubstr("edits.jsonl:1:1: no edit can make this difference: old.xml has no "
                                   "Policy element to put it in")));
}

TEST_F(Diff, UnreadableFile_HasExitCode3AndAnErrorInJson)
{
    Folder().Write(u"broken.xml", "<a>\n<b></a>");
    EXPECT_THAT(Tool({"diff", "policy.xml", "broken.xml"}), Fails(3, HasSubstr("zupolicy: broken.xml:2:")));
    EXPECT_THAT(Tool({"diff", "missing.xml", "policy.xml"}), Fails(3, HasSubstr("missing.xml: ")));
    const ToolRun run = Tool({"diff", "policy.xml", "broken.xml", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    const json error = json::parse(run.out).at("error");
    EXPECT_EQ(error.at("code"), "FFFFFBAE");
    EXPECT_EQ(error.at("name"), "SyntaxError");
    EXPECT_EQ(error.at("exit"), 3);
    EXPECT_EQ(error.at("file"), "broken.xml");
    EXPECT_EQ(error.at("line"), 2);
    EXPECT_GT(error.at("column"), 0);
    EXPECT_TRUE(error.at("message").is_string());
    EXPECT_TRUE(error.at("hint").is_null());
}

}  // namespace
}  // namespace zupm::test
