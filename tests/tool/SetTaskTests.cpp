#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class SetTask : public ToolTest {};

TEST_F(SetTask, ChangesOnlyTheTask)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "3", "--task", "{task-1}"}), "");
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "--task", "{task-1}"}), "3\n");
    const std::string changes = Changes();
    EXPECT_THAT(changes, HasSubstr("- <Setting name=\"Hour\">2</Setting>\n"));
    EXPECT_THAT(changes, testing::Not(HasSubstr("PRODUCTB2000")));
    EXPECT_THAT(changes, testing::Not(HasSubstr("{task-2}")));
}

TEST_F(SetTask, RefusesAMissingTaskWithoutCreate)
{
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "3", "--task", "{task-9}"}),
                Fails(1, HasSubstr("[TaskNotFound, 0xFFFFFB48] (--create adds it)")));
}

TEST_F(SetTask, AddsAMissingTaskWithTheFieldsGiven)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "3", "--task", "{task-9}", "--create",
                   "--display-name", "Prüfung 🚀", "--type", "Scan", "--platforms", "LNX", "--creator", "ME",
                   "--priority", "-7"}),
              "");
    EXPECT_THAT(Out({"show", "policy.xml", "PRODUCTA1000", "--task", "{task-9}"}),
                HasSubstr("Task PRODUCTA1000 {task-9}\n  Name             Prüfung 🚀\n  Type             Scan\n"
                          "  Platforms        LNX\n  Priority         -7\n  Creator          ME\n"));
}

TEST_F(SetTask, GivesANewTaskItsIdAsNameAndNoPlaceholders)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "S", "N", "1", "--task", "{task-9}", "--create"}), "");
    const std::string out = Out({"show", "policy.xml", "PRODUCTA1000", "--task", "{task-9}"});
    EXPECT_THAT(out, HasSubstr("  Name             {task-9}\n  Priority         0\n"));
    EXPECT_THAT(out, testing::Not(HasSubstr("invalid")));
}

TEST_F(SetTask, ChangesAFieldWhenTheValueIsTheSame)
{
    EXPECT_EQ(
        Out({"set", "policy.xml", "PRODUCTA1000", "Schedule", "Hour", "2", "--task", "{task-1}", "--type", "Full"}),
        "");
    EXPECT_THAT(Out({"show", "policy.xml", "PRODUCTA1000", "--task", "{task-1}"}),
                HasSubstr("  Type             Full\n"));
}

TEST_F(SetTask, DoesNotWriteTheFileWhenTheFieldsAreTheSame)
{
    const std::string before = Bytes();
    const std::vector<std::string> line = {
        "set",        "policy.xml", "PRODUCTA1000", "Schedule", "Hour",           "2",
        "--task",     "{task-1}",   "--type",       "Scan",     "--display-name", "Nächtliche Prüfung",
        "--priority", "5",          "--platforms",  "WIN|LNX",  "--creator",      "SITEADMIN"};
    EXPECT_EQ(Out(line), "");
    EXPECT_EQ(Bytes(), before);
    std::vector<std::string> withJson = line;
    withJson.push_back("--json");
    const json change = json::parse(Out(withJson));
    EXPECT_EQ(change["changed"], false);
    EXPECT_EQ(change["written"], nullptr);
    EXPECT_EQ(change["fields"], json::array());
    EXPECT_EQ(Bytes(), before);
}

TEST_F(SetTask, ShowsEachFieldThatChanges)
{
    const std::string before = Bytes();
    const std::vector<std::string> line = {"set",        "policy.xml", "PRODUCTA1000", "Schedule", "Hour",
                                           "2",          "--task",     "{task-1}",     "--type",   "Full",
                                           "--priority", "-3",         "--platforms",  "WIN|LNX",  "--dry-run"};
    EXPECT_EQ(Out(line),
              "task PRODUCTA1000 {task-1}: Schedule/Hour: \"2\" (unchanged)\n"
              "task PRODUCTA1000 {task-1}: type: \"Scan\" -> \"Full\"\n"
              "task PRODUCTA1000 {task-1}: priority: \"5\" -> \"-3\"\n");
    std::vector<std::string> withJson = line;
    withJson.push_back("--json");
    const json change = json::parse(Out(withJson));
    EXPECT_EQ(change["changed"], true);
    EXPECT_EQ(change["fields"], json::parse(R"([{"name": "type", "before": "Scan", "after": "Full"},
                                                {"name": "priority", "before": "5", "after": "-3"}])"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(SetTask, ShowsTheFieldsOfANewTask)
{
    EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "S", "N", "1", "--task", "{task-9}", "--create", "--type", "T",
                   "--dry-run"}),
              "new task PRODUCTA1000 {task-9}: S/N: (none) -> \"1\"\n"
              "new task PRODUCTA1000 {task-9}: displayName: (none) -> \"{task-9}\"\n"
              "new task PRODUCTA1000 {task-9}: type: (none) -> \"T\"\n"
              "new task PRODUCTA1000 {task-9}: platforms: (none) -> \"\"\n"
              "new task PRODUCTA1000 {task-9}: creator: (none) -> \"\"\n"
              "new task PRODUCTA1000 {task-9}: priority: (none) -> \"0\"\n");
}

TEST_F(SetTask, SaysWhichFieldsTheComponentFillsIn)
{
    const std::string file =
        SmallFile("",
                  "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='d' CreatorID='invalid'><Task><S name='S'>"
                  "<s name='n'>1</s></S></Task></TaskGroup>");
    const std::string note = "p.xml: task P T had no type, platforms; the component writes \"invalid\" there\n";
    Folder().Write(u"edits.jsonl",
                   R"({"edit":"set","softwareId":"P","taskId":"T","section":"S","name":"n","value":"2"})");
    Folder().Write(u"entry.json", R"({"softwareId":"P","taskId":"T","sections":[{"name":"S2"}]})");
    const std::vector<std::string> rows[] = {
        {"set", "p.xml", "P", "S", "n", "2", "--task", "T", "-n"},
        {"set", "p.xml", "P", "S", "n", "2", "--task", "T"},
        {"set", "p.xml", "P", "S", "n", "2", "--task", "T", "-o", "-"},
        {"remove", "p.xml", "P", "S", "n", "--task", "T"},
        {"apply", "p.xml", "--edits", "edits.jsonl", "-n"},
        {"apply", "p.xml", "--edits", "edits.jsonl"},
        {"import", "p.xml", "entry.json", "--merge"},
    };
    for (const std::vector<std::string>& row : rows) {
        Folder().Write(u"p.xml", file);
        EXPECT_EQ(Tool(row).messages, note) << testing::PrintToString(row);
    }
    EXPECT_EQ(Tool(rows[5]).messages, "") << "the file has them now";
    Folder().Write(u"p.xml", file);
    EXPECT_EQ(Tool({"set", "p.xml", "P", "--task", "T", "--priority", "1", "--type", "x"}).messages,
              "p.xml: task P T had no platforms; the component writes \"invalid\" there\n");
    Folder().Write(u"p.xml", file);
    EXPECT_EQ(Out({"apply", "p.xml", "--edits", "edits.jsonl", "-q"}), "");
}

TEST_F(SetTask, RefusesSettingsThatTheTasksFieldsOverwrite)
{
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTA1000", "Task", "TaskName", "New", "--task", "{task-1}"}),
                Fails(4, HasSubstr("repeats a field of the task and cannot be set on its own; use --display-name")));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(SetTask, RefusesFieldsWithoutATask)
{
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTA1000", "S", "N", "1", "--priority", "1"}),
                Fails(2, HasSubstr("--task")));
}

TEST_F(SetTask, RefusesAPriorityThatIsNotANumberOrTooLarge)
{
    for (const char* priority : {"high", "3000000000", "1.5"}) {
        EXPECT_THAT(
            Tool({"set", "policy.xml", "PRODUCTA1000", "S", "N", "1", "--task", "{task-1}", "--priority", priority}),
            Fails(2, HasSubstr("--priority")));
    }
}

}  // namespace
}  // namespace zupm::test
