// What every command that writes has in common, and the newer options of set and remove.
#include <nlohmann/json.hpp>
#include <regex>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Writing : public ToolTest {
protected:
    Writing()
    {
        Folder().Write(
            u"edits.jsonl",
            R"({"edit":"set","softwareId":"PRODUCTA1000","section":"General","name":"Enabled","value":"0"})");
        Folder().Write(u"entry.json", R"({"softwareId":"NEW","sections":[{"name":"S"}]})");
        Folder().Write(u"policy.xml.old", SmallFile(""));
    }
    [[nodiscard]] ToolRun With(std::vector<std::string> arguments, const std::vector<std::string>& options) const
    {
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Tool(arguments);
    }
    /// The differences that a run prints, without the time stamps of this moment.
    [[nodiscard]] static std::string WithoutTimes(const std::string& diff)
    {
        return std::regex_replace(diff, std::regex("\"20[0-9]{12}\""), "\"(now)\"");
    }
};

TEST_F(Writing, DryRunRunAndSecondRun_Agree)
{
    const std::vector<std::string> commands[] = {
        {"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0"},
        {"remove", "policy.xml", "PRODUCTA1000", "General", "--ignore-missing"},
        {"apply", "policy.xml", "--edits", "edits.jsonl"},
        {"import", "policy.xml", "entry.json"},
        {"restore", "policy.xml", "--backup=.old", "--from", "policy.xml.old"},
    };
    const std::string sample = Bytes();
    for (const std::vector<std::string>& command : commands) {
        const std::string& name = command.front();
        Folder().Write(u"policy.xml", sample);
        const std::vector<std::string> names = Folder().Names();
        const ToolRun dry = With(command, {"-n", "-v", "--diff"});
        EXPECT_EQ(dry.exitCode, 0) << name << dry.messages;
        const bool hasReport = name != "set" && name != "remove";
        EXPECT_EQ(dry.messages, hasReport ? "" : "policy.xml: would be changed\n") << name;
        EXPECT_THAT(dry.out, testing::StartsWith(hasReport ? "policy.xml: would be " : "--- policy.xml\n")) << name;
        EXPECT_THAT(dry.out, HasSubstr("--- policy.xml\n+++ policy.xml\n@@ -")) << name;
        EXPECT_EQ(Bytes(), sample) << name;
        EXPECT_EQ(Folder().Names(), names) << name;

        const ToolRun run = With(command, {"--diff", "-q"});
        EXPECT_EQ(run.exitCode, 0) << name;
        EXPECT_EQ(run.messages, "") << name;
        EXPECT_THAT(WithoutTimes(dry.out), HasSubstr(WithoutTimes(run.out))) << name;
        const std::string changed = Bytes();
        EXPECT_NE(changed, sample) << name;

        const ToolRun second = With(command, {"-v", "--diff", "--json"});
        EXPECT_EQ(second.messages, "policy.xml: unchanged\n") << name;
        const json report = json::parse(second.out);
        const json& about = report.contains("files") ? report.at("files")[0] : report;
        EXPECT_EQ(about.value("result", "unchanged"), "unchanged") << name;
        EXPECT_FALSE(about.value("changed", false)) << name;
        EXPECT_EQ(about.at("diff"), "") << name;
        EXPECT_EQ(Bytes(), changed) << name;
    }
}

TEST_F(Writing, BackupsOfSetAndRemove_HaveTheBytesThatWereReplaced)
{
    const std::string first = Bytes();
    const ToolRun set = Tool({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0", "--backup", "-v"});
    EXPECT_EQ(set.messages, "policy.xml: changed, backup policy.xml.bak\n");
    EXPECT_EQ(Bytes(u"policy.xml.bak"), first);
    const std::string second = Bytes();
    const json removed = json::parse(Out({"remove", "policy.xml", "PRODUCTA1000", "--backup", "--json"}));
    EXPECT_EQ(removed.at("backup"), "policy.xml.bak.1");
    EXPECT_EQ(Bytes(u"policy.xml.bak.1"), second);
    EXPECT_EQ(Bytes(u"policy.xml.bak"), first);
    // What is not written gets no backup.
    EXPECT_EQ(Out({"remove", "policy.xml", "PRODUCTA1000", "--backup", "--ignore-missing"}), "");
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak.2"));
    EXPECT_THAT(Tool({"set", "policy.xml", "P", "S", "n", "v", "--backup", "-o", "x"}),
                Fails(2, HasSubstr("--backup")));
    EXPECT_THAT(Tool({"remove", "policy.xml", "P", "--backup=a/b"}), Fails(2, HasSubstr("not a path")));
    EXPECT_THAT(Tool({"remove", "policy.xml", "P", "--backup="}),
                Fails(2, testing::StartsWith("zupolicy: --backup= has no value\n")));
    EXPECT_THAT(Tool({"restore", "policy.xml", "--backup="}), Fails(2, HasSubstr("--backup= has no value\n")));
}

TEST_F(Writing, AnImpossibleBackup_IsForeseenByADryRun)
{
    const std::string suffix = "--backup=" + std::string(300, 'x');
    const std::string before = Bytes();
    const std::vector<std::string> names = Folder().Names();
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0"},
          {"apply", "policy.xml", "--edits", "edits.jsonl"}}) {
        for (const char* option : {"--dry-run", "--force"}) {
            const ToolRun run = With(command, {suffix, option});
            EXPECT_EQ(run.exitCode, 3) << command.front() << option;
            EXPECT_THAT(run.messages, HasSubstr("the backup policy.xmlxxx")) << command.front() << option;
        }
    }
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), names);
}

TEST_F(Writing, ShortOptions_AreThoseOfOtherTools)
{
    EXPECT_THAT(Out({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0", "-n"}),
                HasSubstr("\"1\" -> \"0\""));
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0", "-n", "-q"}), "");
    const ToolRun run = Tool({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0", "-o", "new.xml", "-v"});
    EXPECT_EQ(run.messages, "policy.xml: changed, written to new.xml\n");
    EXPECT_TRUE(Folder().Has(u"new.xml"));
    EXPECT_THAT(Tool({"set", "policy.xml", "P", "S", "n", "v", "-o", "-", "--diff"}),
                Fails(2, HasSubstr("cannot be used with --diff")));
    EXPECT_EQ(Out({"apply", "policy.xml", "--edits", "edits.jsonl", "-q"}), "");
    const ToolRun apply = Tool({"apply", "policy.xml", "--edits", "edits.jsonl", "-v"});
    EXPECT_EQ(apply.messages, "") << "the report says it";
    EXPECT_THAT(apply.out, testing::StartsWith("policy.xml: unchanged\n"));
    EXPECT_EQ(Tool({"apply", "policy.xml.old", "policy.xml", "--edits", "edits.jsonl", "-nv", "--json", "--keep-going"})
                  .messages,
              "policy.xml.old: policy PRODUCTA1000: There is no product policy with that software ID. "
              "(edits.jsonl:1:1) [PolicyNotFound, 0xFFFFFB49]; the edit \"create\" adds it\npolicy.xml: unchanged\n");
    EXPECT_EQ(Tool({"import", "policy.xml", "entry.json", "-nv", "--json"}).messages, "policy.xml: would be changed\n");
}

TEST_F(Writing, FieldsOfATask_ChangeWithoutASetting)
{
    const std::vector<std::string> task = {"set", "policy.xml", "PRODUCTA1000", "--task", "{task-1}"};
    EXPECT_EQ(With(task, {"--priority", "9", "-n"}).out, "task PRODUCTA1000 {task-1}: priority: \"5\" -> \"9\"\n");
    EXPECT_EQ(With(task, {"--priority", "9"}).exitCode, 0);
    EXPECT_THAT(Out({"show", "policy.xml", "PRODUCTA1000", "--task", "{task-1}"}), HasSubstr("Priority         9\n"));
    EXPECT_EQ(With(task, {"--priority", "9", "-n"}).out, "task PRODUCTA1000 {task-1}: (unchanged)\n");
    EXPECT_THAT(With(task, {}), Fails(2, HasSubstr("SECTION, NAME and VALUE are required, or a field of a task")));
    EXPECT_THAT(With(task, {"S"}), Fails(2, HasSubstr("NAME is required after SECTION")));
    EXPECT_THAT(With(task, {"S", "n"}), Fails(2, HasSubstr("VALUE is required after NAME")));
    EXPECT_THAT(Tool({"set", "policy.xml", "NEW", "--priority", "9"}), Fails(2, HasSubstr("--task")));
    EXPECT_EQ(Out({"set", "policy.xml", "NEW", "--create"}), "");
    EXPECT_THAT(Out({"show", "policy.xml", "NEW"}), HasSubstr("Policy NEW\n"));
}

TEST_F(Writing, Existing_AddsNothing)
{
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTA1000", "General", "enabled", "0", "--existing"}),
                Fails(1, HasSubstr("[SettingNotFound, 0xFFFFFB4F]; did you mean \"Enabled\"?")));
    EXPECT_EQ(Tool({"set", "policy.xml", "PRODUCTA1000", "None", "Enabled", "0", "--existing"}).exitCode, 1);
    EXPECT_EQ(Tool({"set", "policy.xml", "NONE", "General", "Enabled", "0", "--existing"}).exitCode, 1);
    EXPECT_EQ(Tool({"set", "policy.xml", "NONE", "S", "n", "0", "--existing", "--create"}).exitCode, 2);
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "0", "--existing"}), "");
}

TEST_F(Writing, IgnoreMissing_MakesAMissingPartNoFailure)
{
    const std::string before = Bytes();
    const std::vector<std::string> rows[] = {{"NONE"}, {"PRODUCTA1000", "None"}, {"PRODUCTA1000", "General", "None"}};
    for (const std::vector<std::string>& row : rows) {
        std::vector<std::string> command = {"remove", "policy.xml"};
        command.insert(command.end(), row.begin(), row.end());
        EXPECT_EQ(Tool(command).exitCode, 1) << row.back();
        EXPECT_EQ(With(command, {"--ignore-missing", "-v"}).messages, "policy.xml: unchanged\n") << row.back();
        EXPECT_THAT(With(command, {"--ignore-missing", "-n"}).out, HasSubstr("(unchanged)\n")) << row.back();
    }
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Tool({"remove", "missing.xml", "P", "--ignore-missing"}).exitCode, 3);
}

TEST_F(Writing, ValueFile_IsTheValueWithoutOneLineBreak)
{
    using namespace std::string_literals;
    struct Row {
        std::string bytes;
        std::string value;
    };
    const Row rows[] = {
        {"secret\n", "secret"},
        {"secret", "secret"},
        {"\xEF\xBB\xBFs\xC3\xBC\r\n", "s\xC3\xBC"},
        {"two\nlines\n\n", "two\nlines\n"},
        {"-x\n", "-x"},
        {"", ""},
    };
    const std::vector<std::string> set = {"set", "policy.xml", "PRODUCTA1000", "General", "Enabled"};
    for (const Row& row : rows) {
        Folder().Write(u"value.txt", row.bytes);
        EXPECT_EQ(With(set, {"--value-file", "value.txt"}).exitCode, 0) << row.bytes;
        EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "General", "Enabled"}), row.value + "\n");
    }
    const std::string before = Bytes();
    Folder().Write(u"value.txt", "a\0b"s);
    EXPECT_THAT(With(set, {"--value-file", "value.txt"}),
                Fails(3, "zupolicy: value.txt: the value has a null character, which no policy file can hold\n"));
    Folder().Write(u"value.txt", "ab\xFF");
    EXPECT_THAT(With(set, {"--value-file", "value.txt"}),
                Fails(3, "zupolicy: value.txt: the value is not valid UTF-8 at byte 3\n"));
    EXPECT_THAT(With(set, {"--value-file", "none"}),
                Fails(3, "zupolicy: none: the value cannot be read: The file does not exist.\n"));
    EXPECT_THAT(With(set, {"1", "--value-file", "value.txt"}), Fails(2, HasSubstr("takes the place of VALUE")));
    EXPECT_EQ(Bytes(), before);
}

}  // namespace
}  // namespace zupm::test
