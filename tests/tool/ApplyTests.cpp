// Many edits as one write of each file.
#include <nlohmann/json.hpp>

#include "EditsTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// An edit of product A's policy in the sample.
std::string SetInA(const std::string& name, const std::string& value)
{
    return R"({"edit":"set","softwareId":"PRODUCTA1000","section":"General","name":")" + name + R"(","value":")" +
           value + "\"}\n";
}

std::string PolicyEdit(const std::string& members)
{
    return "{" + members + R"(,"softwareId":"PRODUCTB2000"})" + "\n";
}

std::string TaskEdit(const std::string& members)
{
    return "{" + members + R"(,"softwareId":"PRODUCTA1000","taskId":"{task-1}"})" + "\n";
}

class ApplyEdits : public EditsTest {
protected:
    [[nodiscard]] std::filesystem::file_time_type Time() const
    {
        return std::filesystem::last_write_time(Folder().Folder() / "policy.xml");
    }
    /// Makes the time of policy.xml one that no write of this run gives it.
    void Age() const
    {
        std::filesystem::last_write_time(Folder().Folder() / "policy.xml", Time() - std::chrono::hours(48));
    }
};

TEST_F(ApplyEdits, EachEdit_MakesItsDifferenceAndNoOther)
{
    struct Row {
        std::string edit;
        const char* difference;
    };
    const Row rows[] = {
        {PolicyEdit(R"("edit":"set","section":"General","name":"LogLevel","value":"5")"),
         "~ policy PRODUCTB2000 General/LogLevel: \"3\" -> \"5\"\n"},
        {PolicyEdit(R"("schema":1,"edit":"set","section":"Proxy","name":"x","value":"","before":null)"),
         "+ policy PRODUCTB2000 Proxy/x: \"\"\n"},
        {PolicyEdit(R"("edit":"set","section":"New","name":"x","value":"\u00fc\n","before":{"a":[1,2.5,true]})"),
         "+ policy PRODUCTB2000 New/x: \"\xC3\xBC\\n\"\n"},
        {PolicyEdit(R"("edit":"set","section":"New")"), "+ policy PRODUCTB2000 section New (empty)\n"},
        {PolicyEdit(R"("edit":"absent","section":"General","name":"LogLevel")"),
         "- policy PRODUCTB2000 General/LogLevel: \"3\"\n"},
        {PolicyEdit(R"("edit":"absent","section":"General")"), "- policy PRODUCTB2000 section General (2 settings)\n"},
        {PolicyEdit(R"("edit":"absent")"), "- policy PRODUCTB2000 (2 sections)\n"},
        {PolicyEdit(
             R"("edit":"create","sections":[{"name":"Proxy"},{"name":"S","settings":[{"name":"n","value":"1"}]}])"),
         "+ policy PRODUCTB2000 S/n: \"1\"\n"},
        {R"({"edit":"create","softwareId":"NEW","sections":[{"name":"S","settings":[]},{"name":"T"}]})",
         "+ policy NEW (2 sections)\n"},
        {R"({"edit":"create","softwareId":"NEW"})", "+ policy NEW\n"},
        {TaskEdit(
             R"("edit":"set","fields":{"displayName":"d","type":"t","platforms":"p","priority":-7,"creator":"c"})"),
         "~ task PRODUCTA1000 {task-1} displayName: \"N\xC3\xA4"
         "chtliche Pr\xC3\xBC"
         "fung\" -> \"d\"\n"
         "~ task PRODUCTA1000 {task-1} type: \"Scan\" -> \"t\"\n"
         "~ task PRODUCTA1000 {task-1} platforms: \"WIN|LNX\" -> \"p\"\n"
         "~ task PRODUCTA1000 {task-1} priority: \"5\" -> \"-7\"\n"
         "~ task PRODUCTA1000 {task-1} creator: \"SITEADMIN\" -> \"c\"\n"},
        {TaskEdit(R"("edit":"set","fields":{"priority":"7"},"before":{"priority":"5"})"),
         "~ task PRODUCTA1000 {task-1} priority: \"5\" -> \"7\"\n"},
        {TaskEdit(R"("edit":"set","section":"General","name":"x","value":"1")"),
         "+ task PRODUCTA1000 {task-1} General/x: \"1\"\n"},
        {TaskEdit(R"("edit":"absent","section":"Scope")"), "- task PRODUCTA1000 {task-1} section Scope (1 setting)\n"},
        {TaskEdit(R"("edit":"absent")"), "- task PRODUCTA1000 {task-1} (2 sections)\n"},
        {TaskEdit(
             R"("edit":"create","priority":"6","sections":[{"name":"Scope","settings":[{"name":"n","value":"1"}]}])"),
         "~ task PRODUCTA1000 {task-1} priority: \"5\" -> \"6\"\n+ task PRODUCTA1000 {task-1} Scope/n: \"1\"\n"},
        {R"({"edit":"create","softwareId":"NEW","taskId":"T","type":"Y","sections":[{"name":"S"}]})",
         "+ task NEW T (1 section)\n"},
    };
    const std::string sample = Bytes();
    for (const Row& row : rows) {
        Folder().Write(u"policy.xml", sample);
        const ToolRun first = Apply(row.edit);
        EXPECT_EQ(first.exitCode, 0) << row.edit << first.messages;
        EXPECT_EQ(first.out, "policy.xml: changed (1 edit)\n1 changed, 0 unchanged, 0 failed, 0 not done\n")
            << row.edit;
        EXPECT_EQ(Made(), row.difference) << row.edit;
        const std::string once = Bytes();
        Age();
        const auto before = Time();
        const ToolRun second = Apply(row.edit);
        EXPECT_EQ(second.exitCode, 0) << row.edit;
        EXPECT_EQ(second.out, "policy.xml: unchanged\n0 changed, 1 unchanged, 0 failed, 0 not done\n") << row.edit;
        EXPECT_EQ(Bytes(), once) << row.edit;
        EXPECT_EQ(Time(), before) << row.edit;
    }
}

TEST_F(ApplyEdits, WhatIsAsTheEditWantsIt_IsNotWritten)
{
    const std::string edits[] = {
        SetInA("Enabled", "1"),
        R"({"edit":"set","softwareId":"PRODUCTB2000","section":"Proxy"})",
        R"({"edit":"absent","softwareId":"NOBODY"})",
        R"({"edit":"absent","softwareId":"NOBODY","section":"S"})",
        R"({"edit":"absent","softwareId":"NOBODY","taskId":"T","section":"S","name":"n"})",
        R"({"edit":"absent","softwareId":"PRODUCTA1000","section":"General","name":"none"})",
        R"({"edit":"create","softwareId":"PRODUCTA1000"})",
        R"({"edit":"create","softwareId":"PRODUCTA1000","taskId":"{task-1}","priority":5})",
        R"({"edit":"set","softwareId":"PRODUCTA1000","taskId":"{task-1}","section":"General"})",
        R"({"edit":"set","softwareId":"PRODUCTA1000","taskId":"{task-1}","fields":{"type":"Scan"}})",
        R"({"edit":"set","softwareId":"PRODUCTA1000","taskId":"{task-1}","section":"Task","name":"TaskType","value":"Scan"})",
        // What several edits do may cancel out.
        SetInA("Enabled", "0") + SetInA("Enabled", "1"),
        R"({"edit":"create","softwareId":"NEW"})"
        "\n"
        R"({"edit":"absent","softwareId":"NEW"})",
        "\n \t\r\n",
        "",
    };
    const std::string before = Bytes();
    Age();
    const auto time = Time();
    for (const std::string& edit : edits) {
        const ToolRun run = Apply(edit, {"--backup"});
        EXPECT_EQ(run.exitCode, 0) << edit << run.messages;
        EXPECT_THAT(run.out, testing::StartsWith("policy.xml: unchanged\n")) << edit;
    }
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Time(), time);
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak"));
}

TEST_F(ApplyEdits, OneEdit_LeavesTheRestOfTheFileAsItIs)
{
    EXPECT_EQ(Apply(SetInA("ScanInterval", "15")).exitCode, 0);
    const std::string applied = Changes();
    Folder().Write(u"policy.xml", ReadBytes(std::filesystem::path(ZUPM_SAMPLE).u16string()));
    (void)Out({"set", "policy.xml", "PRODUCTA1000", "General", "ScanInterval", "15"});
    EXPECT_EQ(Changes(), applied) << "set and apply write the same";
}

TEST_F(ApplyEdits, LaterEdits_SeeWhatEarlierOnesMade)
{
    EXPECT_EQ(Apply(R"({"edit":"create","softwareId":"NEW"})"
                    "\n"
                    R"({"edit":"set","softwareId":"NEW","section":"S","name":"n","value":"1"})"
                    "\n"
                    R"({"edit":"set","softwareId":"NEW","section":"S","name":"n","value":"2"})"
                    "\n"
                    R"({"edit":"absent","softwareId":"PRODUCTB2000"})"
                    "\n"
                    R"({"edit":"create","softwareId":"PRODUCTB2000","sections":[{"name":"S"}]})")
                  .out,
              "policy.xml: changed (5 edits)\n1 changed, 0 unchanged, 0 failed, 0 not done\n");
    EXPECT_EQ(Made(),
              "- policy PRODUCTB2000 section General (2 settings)\n- policy PRODUCTB2000 section Proxy (empty)\n"
              "+ policy PRODUCTB2000 section S (empty)\n+ policy NEW (1 section)\n");
}

TEST_F(ApplyEdits, AnEditThatCannotBeMade_LeavesTheFileAsItWas)
{
    struct Row {
        std::string edit;
        int exitCode;
        const char* message;
    };
    const Row rows[] = {
        {R"({"edit":"set","softwareId":"PRODUCTA100","section":"S"})", 1,
         "policy.xml: policy PRODUCTA100: There is no product policy with that software ID. (edits.jsonl:2:1) "
         "[PolicyNotFound, 0xFFFFFB49]; did you mean \"PRODUCTA1000\"?\n"},
        {R"({"edit":"set","softwareId":"","section":"S"})", 1,
         "policy.xml: policy : There is no product policy with that software ID. (edits.jsonl:2:1) "
         "[PolicyNotFound, 0xFFFFFB49]; the software ID is empty\n"},
        {R"( {"edit":"set","softwareId":"PRODUCTA1000","taskId":"T","section":"S"})", 1,
         "policy.xml: task PRODUCTA1000 T: There is no task with that software ID and task ID. (edits.jsonl:2:2) "
         "[TaskNotFound, 0xFFFFFB48]; the edit \"create\" adds it\n"},
        {TaskEdit(R"("edit":"set","section":"Task","name":"TaskName","value":"other")"), 4,
         "policy.xml: task PRODUCTA1000 {task-1}: setting TaskName of section Task repeats a field of the task and "
         "cannot be edited on its own (edits.jsonl:2:1); set the field: displayName, type, platforms or priority\n"},
        {TaskEdit(R"("edit":"absent","section":"General","name":"wTaskType")"), 4,
         "policy.xml: task PRODUCTA1000 {task-1}: setting wTaskType of section General repeats a field of the task and "
         "cannot be edited on its own (edits.jsonl:2:1); set the field: displayName, type, platforms or priority\n"},
        {TaskEdit(R"("edit":"create","sections":[{"name":"Task","settings":[{"name":"TaskPriority","value":"6"}]}])"),
         4,
         "policy.xml: task PRODUCTA1000 {task-1}: setting TaskPriority of section Task repeats a field of the task and "
         "cannot be edited on its own (edits.jsonl:2:1); set the field: displayName, type, platforms or priority\n"},
    };
    const std::string before = Bytes();
    for (const Row& row : rows) {
        const ToolRun run = Apply(SetInA("ScanInterval", "15") + row.edit, {"--backup"});
        EXPECT_EQ(run.exitCode, row.exitCode) << row.edit;
        EXPECT_EQ(run.messages, row.message);
        EXPECT_EQ(run.out, "0 changed, 0 unchanged, 1 failed, 0 not done\n") << row.edit;
        EXPECT_EQ(Bytes(), before) << row.edit;
    }
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak"));
}

TEST_F(ApplyEdits, ASettingThatRepeatsAField_MayBeGivenWithTheField)
{
    EXPECT_EQ(
        Apply(
            TaskEdit(
                R"("edit":"create","type":"Y","sections":[{"name":"Task","settings":[{"name":"TaskType","value":"Y"}]}])"))
            .exitCode,
        0);
    EXPECT_EQ(Made(), "~ task PRODUCTA1000 {task-1} type: \"Scan\" -> \"Y\"\n");
}

TEST_F(ApplyEdits, AFileWithoutAPlaceForTheEntry_IsRefused)
{
    Folder().Write(u"policy.xml", "<F><PolicyRoot/></F>");
    const ToolRun run = Apply(R"({"edit":"create","softwareId":"NEW"})");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.messages, MatchesPattern("policy\\.xml: policy NEW: .*\\[ElementMissing, 0xFFFFFBB4\\]; .*\n"));
    EXPECT_EQ(Bytes(), "<F><PolicyRoot/></F>");
}

TEST_F(ApplyEdits, WhatAppearsTwiceInAFile_IsEditedUntilALookupFindsTheResult)
{
    const std::string twice = SmallFile(
        "<Product SoftwareID='P'><S name='A'><s name='n'>1</s><s name='n'>2</s></S><S name='A'><s name='n'>3</s>"
        "<s name='m'>4</s></S></Product><Product SoftwareID='P'><S name='A'><s name='n'>5</s></S></Product>",
        "<TaskGroup SoftwareID='P' TaskID='T'><Task><S name='A'/></Task></TaskGroup>"
        "<TaskGroup SoftwareID='P' TaskID='T'><Task><S name='A'><s name='n'>5</s></S></Task></TaskGroup>");
    Folder().Write(u"before.xml", twice);
    struct Row {
        const char* edit;
        const char* difference;
    };
    const Row rows[] = {
        {R"({"edit":"absent","softwareId":"P","section":"A","name":"n"})", "- policy P A/n: \"1\"\n"},
        {R"({"edit":"absent","softwareId":"P","section":"A"})", "- policy P section A (2 settings)\n"},
        {R"({"edit":"absent","softwareId":"P"})", "- policy P (1 section)\n"},
        {R"({"edit":"set","softwareId":"P","section":"A","name":"n","value":"9"})", "~ policy P A/n: \"1\" -> \"9\"\n"},
        {R"({"edit":"absent","softwareId":"P","taskId":"T"})", "- task P T (1 section)\n"},
        {R"({"edit":"set","softwareId":"P","taskId":"T","section":"A","name":"m","value":"9"})",
         "+ task P T A/m: \"9\"\n"},
    };
    for (const Row& row : rows) {
        Folder().Write(u"policy.xml", twice);
        EXPECT_EQ(Apply(row.edit).exitCode, 0) << row.edit;
        EXPECT_EQ(Differences("before.xml", "policy.xml"), row.difference) << row.edit;
        EXPECT_THAT(Apply(row.edit).out, HasSubstr("policy.xml: unchanged")) << row.edit;
    }
    Folder().Write(u"policy.xml", twice);
    EXPECT_THAT(Apply(rows[3].edit, {"--dry-run"}).out, HasSubstr("\n- policy P (1 other one of this ID)\n"));
}

TEST_F(ApplyEdits, DryRun_PrintsTheDifferencesAndWritesNothing)
{
    const std::string before = Bytes();
    const ToolRun run = Apply(SetInA("ScanInterval", "15") + SetInA("Enabled", "1"), {"--dry-run", "--backup"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out,
              "policy.xml: would be changed (1 edit)\n~ policy PRODUCTA1000 General/ScanInterval: \"60\" -> \"15\"\n"
              "1 would change, 0 unchanged, 0 failed, 0 not done\n");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"edits.jsonl", "policy.xml"}));
}

TEST_F(ApplyEdits, Json_NamesAHintAndNoPlaceForAFailureInside)
{
    const ToolRun run = Apply(R"({"edit":"set","softwareId":"PRODUCTA100","section":"S"})", {"--json"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(
        json::parse(run.out).at("files")[0].at("error"),
        (json{{"code", "FFFFFB49"},
              {"name", "PolicyNotFound"},
              {"exit", 1},
              {"file", "policy.xml"},
              {"line", nullptr},
              {"column", nullptr},
              {"message", "policy PRODUCTA100: There is no product policy with that software ID. (edits.jsonl:1:1)"},
              {"hint", "did you mean \"PRODUCTA1000\"?"}}));
}

TEST_F(ApplyEdits, LockThatIsNotReleased_IsWaitedForUntilTheTimeout)
{
    HeldFile other;
    ASSERT_EQ(other.Open(Folder().Path(u"policy.xml")), result::Success);
    ASSERT_EQ(other.TryLock(), result::Success);
    const std::string before = Bytes();
    const auto begin = std::chrono::steady_clock::now();
    const ToolRun run = Apply(SetInA("ScanInterval", "15"), {"--lock-timeout", "1"});
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_THAT(run.messages, HasSubstr("[FileLocked, 0xFFFFFAEB]; --lock-timeout sets how long to wait\n"));
    EXPECT_EQ(Apply(SetInA("ScanInterval", "15"), {"--lock-timeout", "0", "--dry-run"}).exitCode, 6);
    EXPECT_EQ(Bytes(), before);
    other.Close();
    EXPECT_EQ(Apply(SetInA("ScanInterval", "15"), {"--lock-timeout", "0"}).exitCode, 0);
}

TEST_F(ApplyEdits, Backup_HasTheBytesThatWereReplaced)
{
    const std::string first = Bytes();
    EXPECT_EQ(Apply(SetInA("ScanInterval", "1"), {"--backup"}).out,
              "policy.xml: changed (1 edit), backup policy.xml.bak\n1 changed, 0 unchanged, 0 failed, 0 not done\n");
    const std::string second = Bytes();
    EXPECT_EQ(Bytes(u"policy.xml.bak"), first);
    const ToolRun run = Apply(SetInA("ScanInterval", "2"), {"--backup", "--json"});
    EXPECT_EQ(json::parse(run.out).at("files")[0].at("backup"), "policy.xml.bak.1");
    EXPECT_EQ(Bytes(u"policy.xml.bak"), first) << "a backup is never overwritten";
    EXPECT_EQ(Bytes(u"policy.xml.bak.1"), second);
    const std::string third = Bytes();
    EXPECT_EQ(Apply(SetInA("ScanInterval", "3"), {"--backup=~\xC3\xBC"}).exitCode, 0);
    EXPECT_EQ(Bytes(u"policy.xml~\u00FC"), third);
}

TEST_F(ApplyEdits, BackupSuffix_IsNoPath)
{
    for (const char* suffix : {"--backup=/tmp/x", "--backup=x/../y", "--backup=\\x"}) {
        EXPECT_THAT(Apply(SetInA("ScanInterval", "1"), {suffix}),
                    Fails(2, HasSubstr("--backup takes a suffix such as .bak, not a path")))
            << suffix;
    }
}

TEST_F(ApplyEdits, FiftyThousandEdits_AreOneWrite)
{
    constexpr int kEdits = 50'000;
    std::string edits;
    for (int i = 0; i < kEdits; ++i) {
        edits += SetInA("N" + std::to_string(i), std::to_string(i));
    }
    EXPECT_THAT(Apply(edits).out, HasSubstr("policy.xml: changed (50000 edits)"));
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTA1000", "General", "N49999"}), "49999\n");
    EXPECT_THAT(Apply(edits).out, HasSubstr("policy.xml: unchanged"));
    const std::string bad = edits + "{}\n";
    EXPECT_THAT(Apply(bad), Fails(3, HasSubstr("edits.jsonl:50001:1: an edit needs the member \"edit\"")));
}

TEST_F(ApplyEdits, InvisibleCharactersOfFileNames_AreEscaped)
{
    Folder().Write(u"a\u202E.xml", Bytes());
    EXPECT_EQ(ApplyTo({"a\xE2\x80\xAE.xml"}, "").out,
              "a\\u202e.xml: unchanged\n0 changed, 1 unchanged, 0 failed, 0 not done\n");
}

TEST_F(ApplyEdits, UsageErrors)
{
    EXPECT_THAT(Tool({"apply", "policy.xml"}), Fails(2, HasSubstr("--edits")));
    EXPECT_THAT(Tool({"apply", "--edits", "edits.jsonl"}), Fails(2, HasSubstr("FILE")));
    EXPECT_THAT(Tool({"apply", "policy.xml", "--edits", "missing.jsonl"}),
                Fails(3, "zupolicy: missing.jsonl: the edits cannot be read: The file does not exist.\n"));
    EXPECT_THAT(Tool({"apply", "policy.xml", "--edits", "."}),
                Fails(3, "zupolicy: .: the edits cannot be read: is a folder\n"));
    EXPECT_EQ(ApplyTo({"."}, SetInA("ScanInterval", "1")).messages, ".: is a folder [AccessDenied, 0x80070005]\n");
}

}  // namespace
}  // namespace zupm::test
