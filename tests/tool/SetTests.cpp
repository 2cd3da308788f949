#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Set : public ToolTest {};

TEST_F(Set, ChangesTheSettingTheStampsAndNothingElse)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5"}), "");
    const std::string changes = Changes();
    EXPECT_THAT(changes, HasSubstr("- <Setting name=\"LogLevel\">3</Setting>"));
    EXPECT_THAT(changes, HasSubstr("+ <Setting name=\"LogLevel\">5</Setting>"));
    EXPECT_THAT(changes, HasSubstr("+ <PolicyRoot version=\"(now)\" AssignmentList=\"all;site=süd\">"));
    EXPECT_THAT(changes, HasSubstr("+ <Policy PathID=\"0_4\" PolicyVersion=\"(now)\">"));
    EXPECT_EQ(std::count(changes.begin(), changes.end(), '\n'), 6) << changes;
}

TEST_F(Set, AddsAMissingSectionAndSetting)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "Neu", "Größe", "ü<🚀>&"}), "");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "Neu", "Größe"}), "ü<🚀>&\n");
}

TEST_F(Set, DoesNotWriteTheFileWhenTheValueIsTheSame)
{
    const std::string before = Bytes();
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "3"}), "");
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Set, WritesAnotherFileAndKeepsTheOriginal)
{
    const std::string before = Bytes();
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--output", "new.xml"}), "");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Out({"get", "new.xml", "PRODUCTB2000", "General", "LogLevel"}), "5\n");
}

TEST_F(Set, WritesTheDocumentToStandardOutputInItsOwnEncoding)
{
    const std::string before = Bytes();
    const std::vector<std::string> line = {"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5"};
    const auto lineWith = [&](const std::vector<std::string>& options) {
        std::vector<std::string> all = line;
        all.insert(all.end(), options.begin(), options.end());
        return all;
    };
    Folder().Write(u"new.xml", Out(lineWith({"--output", "-"})));
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"new.xml", "policy.xml"}));
    EXPECT_EQ(Bytes(), before);
    EXPECT_THAT(Changes(u"new.xml"), HasSubstr("+ <Setting name=\"LogLevel\">5</Setting>"));
    EXPECT_EQ(Bytes(u"new.xml").substr(0, 2), "\xFF\xFE");

    // The same bytes as a file gets, line ends included, also when there is nothing to change.
    (void)Folder().Write(u"small.xml",
                         "<a>\r\n<PolicyRoot version='1'>\n<PolicyGroup Path='0_4'><Policy><Product "
                         "SoftwareID='P'><Section name='S'><Setting name='N'>1</Setting></Section>"
                         "</Product></Policy></PolicyGroup></PolicyRoot></a>\r\n");
    EXPECT_EQ(Out({"set", "small.xml", "P", "S", "N", "1", "--output", "-"}),
              "<a>\r\n<PolicyRoot version='1'>\n<PolicyGroup Path='0_4'><Policy><Product "
              "SoftwareID='P'><Section name='S'><Setting name='N'>1</Setting></Section>"
              "</Product></Policy></PolicyGroup></PolicyRoot></a>\r\n");
    EXPECT_THAT(Tool(lineWith({"--output", "-", "--json"})), Fails(2, HasSubstr("cannot be used with --json")));
    EXPECT_THAT(Tool(lineWith({"--output", "-", "--dry-run"})), Fails(2, HasSubstr("cannot be used with --dry-run")));
}

TEST_F(Set, NamesTheElementThatANewEntryNeeds)
{
    const struct {
        const char* text;
        const char* task;
        const char* missing;
    } rows[] = {
        {"<F/>", nullptr, "PolicyRoot"},
        {"<F><PolicyRoot/></F>", nullptr, "PolicyGroup"},
        {"<F><PolicyRoot><PolicyGroup/></PolicyRoot></F>", nullptr, "Policy"},
        {"<F><PolicyRoot><PolicyGroup><Policy/></PolicyGroup></PolicyRoot></F>", "{t}", "TaskRoot"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        (void)Folder().Write(u"bare.xml", row.text);
        std::vector<std::string> line = {"set", "bare.xml", "P", "S", "N", "1", "--create"};
        if (row.task != nullptr) {
            line.insert(line.end(), {"--task", row.task});
        }
        EXPECT_THAT(Tool(line), Fails(4, HasSubstr(": The file has no " + std::string(row.missing) +
                                                   " element to put it in. [ElementMissing, 0xFFFFFBB4]\n")));
    }
}

TEST_F(Set, WritesTheOtherFileEvenWhenNothingChanged)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "3", "--output", "new.xml"}), "");
    EXPECT_EQ(Bytes(u"new.xml"), Bytes());
}

TEST_F(Set, PrintsTheChangeAndWritesNothingInADryRun)
{
    const std::string before = Bytes();
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--dry-run"}),
              "policy PRODUCTB2000: General/LogLevel: \"3\" -> \"5\"\n");
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "3", "--dry-run"}),
              "policy PRODUCTB2000: General/LogLevel: \"3\" (unchanged)\n");
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTX", "General", "On", "1", "--create", "--dry-run"}),
              "new policy PRODUCTX: General/On: (none) -> \"1\"\n");
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTX", "S", "N", "1", "--create", "--dry-run", "--output", "no.xml"}),
              "new policy PRODUCTX: S/N: (none) -> \"1\"\n");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), std::vector<std::string>{"policy.xml"});
}

TEST_F(Set, PrintsTheChangeAsJson)
{
    const json change = json::parse(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--json"}));
    EXPECT_EQ(change, json::parse(R"({"schema": 1, "softwareId": "PRODUCTB2000", "new": false, "section": "General",
        "name": "LogLevel", "before": "3", "after": "5", "changed": true, "written": "policy.xml"})"));
    const json again = json::parse(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--json"}));
    EXPECT_EQ(again["changed"], false);
    EXPECT_EQ(again["written"], nullptr);
}

TEST_F(Set, RefusesAMissingPolicyWithoutCreate)
{
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTX", "General", "Enabled", "1"}),
                Fails(1,
                      "zupolicy: policy.xml: policy PRODUCTX: There is no product policy with that software ID. "
                      "[PolicyNotFound, 0xFFFFFB49] (--create adds it)\n"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Set, AddsAMissingPolicyWithCreate)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTX", "General", "Enabled", "1", "--create"}), "");
    EXPECT_THAT(Changes(), HasSubstr("+ <Product SoftwareID=\"PRODUCTX\">\n+ <Section name=\"General\">\n"
                                     "+ <Setting name=\"Enabled\">1</Setting>\n"));
}

TEST_F(Set, SaysThatAnIdIsEmptyAndAddsNothing)
{
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"set", "policy.xml", "", "S", "n", "v"}),
                Fails(1, HasSubstr("[PolicyNotFound, 0xFFFFFB49]; the software ID is empty\n")));
    EXPECT_THAT(Tool({"set", "policy.xml", "", "S", "n", "v", "--create"}),
                Fails(2, "zupolicy: policy.xml: the software ID is empty, so nothing is added\n"));
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTA1000", "--task", "", "--create"}),
                Fails(2, "zupolicy: policy.xml: the task ID is empty, so nothing is added\n"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Set, TakesANegativeNumberAsAValue)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "-5"}), "");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "General", "LogLevel"}), "-5\n");
}

TEST_F(Set, TakesValuesThatLookLikeOptionsAfterTwoDashes)
{
    for (const char* value : {"-x", "--json", "--", "-5"}) {
        EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "--", value}), "");
        EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "General", "LogLevel"}), std::string(value) + "\n");
    }
}

TEST_F(Set, SuggestsTwoDashesBeforeAValueLikeAnOption)
{
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "-x"}),
                Fails(2, HasSubstr("Put -- before a value that begins with a dash")));
}

TEST_F(Set, TakesAnyTextAsAValue)
{
    const char* const values[] = {"",    " ",  "get",   "set",   "/etc", "[a,b]", "{}",
                                  "a=b", "%%", "@file", "\"q\"", "'q'",  "-",     "++"};
    for (const char* value : values) {
        SCOPED_TRACE(value);
        EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTB2000", "show", "get", value}), "");
        EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "show", "get"}), std::string(value) + "\n");
    }
}

TEST_F(Set, KeepsTheOldFileWhenTheValueCannotBeWritten)
{
    const struct {
        std::vector<std::string> line;
        const char* message;
    } rows[] = {
        {{"PRODUCTB2000", "General", "LogLevel", "\xC3\xA4\x01"},
         "policy PRODUCTB2000: the value holds a character that XML cannot hold: U+0001, character 2\n"},
        {{"PRODUCTB2000", "\x1F", "LogLevel", "a"},
         "policy PRODUCTB2000: the section holds a character that XML cannot hold: U+001F, character 1\n"},
        {{"PRODUCTB2000", "General", "a\xEF\xBF\xBE", "a"},
         "policy PRODUCTB2000: the name holds a character that XML cannot hold: U+FFFE, character 2\n"},
        {{"PRODUCTB2000", "--task", "{task-1}", "--creator", "a\x02"},
         "task PRODUCTB2000 {task-1}: the creator holds a character that XML cannot hold: U+0002, character 2\n"},
        {{"P\x01", "S", "n", "v", "--create"},
         "policy P\\u0001: the software ID holds a character that XML cannot hold: U+0001, character 2\n"},
    };
    const std::string before = Bytes();
    for (const auto& row : rows) {
        std::vector<std::string> line = {"set", "policy.xml"};
        line.insert(line.end(), row.line.begin(), row.line.end());
        EXPECT_THAT(Tool(line), Fails(4, "zupolicy: policy.xml: " + std::string(row.message)));
    }
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Set, ReportsAnOutputThatCannotBeWritten)
{
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--output", "none/new.xml"}),
                Fails(3, MatchesPattern("zupolicy: none/new\\.xml: .+ \\[[A-Za-z]+, 0x8007000[23]\\]\n")));
}

TEST_F(Set, FailsWhenTheFileHasNoPlaceForAPolicy)
{
    (void)Folder().Write(u"bare.xml", "<PolicyFile/>");
    EXPECT_THAT(Tool({"set", "bare.xml", "PRODUCTX", "General", "Enabled", "1", "--create"}),
                Fails(4, HasSubstr("[ElementMissing, 0xFFFFFBB4]")));
    EXPECT_EQ(Bytes(u"bare.xml"), "<PolicyFile/>");
}

TEST_F(Set, RefusesAPolicyWhoseSoftwareIdOccursAgain)
{
    const std::string text = SmallFile(
        "<Product SoftwareID=\"A\"><Section name=\"S\"><Setting name=\"x\">1</Setting>"
        "</Section></Product><Product SoftwareID=\"A\"/>");
    (void)Folder().Write(u"twice.xml", text);
    EXPECT_THAT(Tool({"set", "twice.xml", "A", "S", "x", "2"}),
                Fails(4,
                      "zupolicy: twice.xml: policy A: the software ID occurs again, and the other policy would be "
                      "found in place of the changed one; zupolicy apply can edit it\n"));
    EXPECT_EQ(Bytes(u"twice.xml"), text);
}

}  // namespace
}  // namespace zupm::test
