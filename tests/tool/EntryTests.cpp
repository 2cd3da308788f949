// export and import: one policy or task as JSON, and into one or many files.
#include <nlohmann/json.hpp>

#include "EditsTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class EntryFiles : public EditsTest {
protected:
    [[nodiscard]] ToolRun Import(const std::string& entry, std::vector<std::string> options = {}) const
    {
        Folder().Write(u"entry.json", entry);
        options.insert(options.begin(), {"import", "policy.xml", "entry.json"});
        return Tool(options);
    }
};

TEST_F(EntryFiles, ExportImportExport_GivesTheSameJson)
{
    for (const std::vector<std::string>& id :
         {std::vector<std::string>{"PRODUCTA1000"}, {"PRODUCTB2000"}, {"PRODUCTA1000", "--task", "{task-1}"}}) {
        std::vector<std::string> arguments = {"export", "policy.xml"};
        arguments.insert(arguments.end(), id.begin(), id.end());
        const std::string exported = Out(arguments);
        Folder().Write(u"entry.json", exported);
        Folder().Write(u"new.xml", SmallFile(""));
        EXPECT_EQ(Out({"import", "new.xml", "entry.json"}),
                  "new.xml: changed\n1 changed, 0 unchanged, 0 failed, 0 not done\n");
        arguments[1] = "new.xml";
        EXPECT_EQ(Out(arguments), exported);
    }
}

TEST_F(EntryFiles, Export_HasTheFormOfShow)
{
    json shown = json::parse(Out({"show", "policy.xml", "PRODUCTB2000", "--json"})).at("policies")[0];
    json exported = json::parse(Out({"export", "policy.xml", "PRODUCTB2000"}));
    EXPECT_EQ(exported.at("schema"), 1);
    EXPECT_EQ(exported.at("kind"), "policy");
    exported.erase("schema");
    exported.erase("kind");
    EXPECT_EQ(Import(shown.dump()).out, "policy.xml: unchanged\n0 changed, 1 unchanged, 0 failed, 0 not done\n");
    shown.erase("version");
    EXPECT_EQ(exported, shown);
}

TEST_F(EntryFiles, ExportIntoAFile_ReplacesItInOneStep)
{
    const std::string expected = Out({"export", "policy.xml", "PRODUCTA1000"});
    Folder().Write(u"out.json", "old");
    EXPECT_EQ(Out({"export", "policy.xml", "PRODUCTA1000", "-o", "out.json"}), "");
    EXPECT_EQ(Bytes(u"out.json"), expected);
    EXPECT_EQ(Out({"export", "policy.xml", "PRODUCTA1000", "--output", "new.json"}), "");
    EXPECT_EQ(Bytes(u"new.json"), expected);
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"new.json", "out.json", "policy.xml"}));
    EXPECT_THAT(Tool({"export", "policy.xml", "PRODUCTA1000", "-o", "policy.xml"}),
                Fails(2, HasSubstr("is FILE itself")));
    EXPECT_EQ(Tool({"export", "policy.xml", "PRODUCTA1000", "-o", "."}).exitCode, 3);
    EXPECT_EQ(Out({"export", "policy.xml", "PRODUCTA1000", "--json"}), expected);
    EXPECT_EQ(json::parse(Out({"export", "policy.xml", "PRODUCTA1000", "--json", "-o", "out.json"})),
              json::parse(R"({"schema": 1, "softwareId": "PRODUCTA1000", "written": "out.json"})"));
    EXPECT_THAT(Tool({"export", "policy.xml", "PRODUCTA100"}),
                Fails(1,
                      "zupolicy: policy.xml: policy PRODUCTA100: There is no product policy with that software ID. "
                      "[PolicyNotFound, 0xFFFFFB49]; did you mean \"PRODUCTA1000\"?\n"));
    EXPECT_EQ(json::parse(Tool({"export", "policy.xml", "PRODUCTA100", "--json"}).out)["error"]["hint"],
              "did you mean \"PRODUCTA1000\"?");
}

TEST_F(EntryFiles, AnEntryThatDiffers_IsRefusedReplacedOrMerged)
{
    const std::string entry =
        R"({"softwareId":"PRODUCTB2000","sections":[{"name":"General","settings":[{"name":"Enabled","value":"7"}]}]})";
    const std::string before = Bytes();
    const ToolRun refused = Import(entry);
    EXPECT_EQ(refused.exitCode, 4);
    EXPECT_EQ(refused.messages,
              "policy.xml: policy PRODUCTB2000: exists already, and differs (entry.json:1:1); --replace makes it like "
              "the entry, --merge sets what the entry has\n");
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Import(entry, {"--merge"}).exitCode, 0);
    EXPECT_EQ(Made(), "~ policy PRODUCTB2000 General/Enabled: \"0\" -> \"7\"\n");
    EXPECT_EQ(Import(entry, {"--replace", "--backup"}).out,
              "policy.xml: changed, backup policy.xml.bak\n1 changed, 0 unchanged, 0 failed, 0 not done\n");
    EXPECT_EQ(Made(),
              "~ policy PRODUCTB2000 General/Enabled: \"0\" -> \"7\"\n- policy PRODUCTB2000 General/LogLevel: \"3\"\n"
              "- policy PRODUCTB2000 section Proxy (empty)\n");
    const std::string after = Bytes();
    for (const char* option : {"--replace", "--merge", "--backup"}) {
        EXPECT_EQ(Import(entry, {option}).out, "policy.xml: unchanged\n0 changed, 1 unchanged, 0 failed, 0 not done\n")
            << option;
    }
    EXPECT_EQ(Bytes(), after);
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak.1"));
}

TEST_F(EntryFiles, ReplacedFieldsOfATask_AreThoseOfTheEntry)
{
    EXPECT_EQ(
        Import(R"({"kind":"task","softwareId":"PRODUCTA1000","taskId":"{task-2}","type":"T"})", {"--replace"}).exitCode,
        0);
    EXPECT_THAT(Made(),
                testing::AllOf(HasSubstr("{task-2} displayName: \"\xE5\xAE\x9A\xE6\x9C\x9F\xE6\x9B\xB4\xE6\x96\xB0 "
                                         "\xF0\x9F\x97\x93\" -> \"{task-2}\"\n"),
                               HasSubstr("{task-2} type: \"Update\" -> \"T\"\n"),
                               HasSubstr("{task-2} platforms: \"WIN\" -> \"\"\n"),
                               HasSubstr("{task-2} priority: \"-2\" -> \"0\"\n")));
}

TEST_F(EntryFiles, ABadEntry_IsRefusedWithItsPlace)
{
    struct Row {
        const char* entry;
        const char* message;
    };
    const Row rows[] = {
        {"{\n \"softwareId\": 5}", "2:16: \"softwareId\" must be a text"},
        {"{\"softwareId\":\"P\",\n\"x\":1}", "2:1: an entry has no member \"x\""},
        {"\xEF\xBB\xBF{\"schema\":2,\"softwareId\":\"P\"}", "1:11: \"schema\" must be 1"},
        {R"({"softwareId":""})", "1:15: \"softwareId\" must not be empty"},
        {R"({"softwareId":"P","taskId":""})", "1:28: \"taskId\" must not be empty"},
        {R"({"softwareId":"P","taskId":"T","priority":"x"})", "1:43: \"priority\" must be a whole number"},
        {R"({"softwareId":"P","kind":"task"})", "1:26: \"kind\" must be \"policy\""},
        {R"({"softwareId":"P","displayName":"n"})", "1:1: only a task has fields"},
        {R"({"softwareId":"P","sections":[{"name":"S"},{"name":"S"}]})", "1:44: the section \"S\" occurs again"},
        {"[]", "1:1: an entry must be an object"},
        {"{} {}", "1:4: syntax error"},
        {"", "1:1: syntax error"},
    };
    const std::string before = Bytes();
    for (const Row& row : rows) {
        EXPECT_THAT(Import(row.entry),
                    Fails(3, testing::StartsWith("zupolicy: entry.json:" + std::string(row.message))))
            << row.entry;
    }
    EXPECT_EQ(Bytes(), before);
    EXPECT_THAT(Tool({"import", "policy.xml"}), Fails(2, HasSubstr("FILE and ENTRY are required")));
    EXPECT_THAT(Tool({"import", "policy.xml", "none.json", "--json"}).out,
                HasSubstr("\"the entry cannot be read: The file does not exist.\""));
}

TEST_F(EntryFiles, ManyFiles_EachGetTheEntry)
{
    Folder().Write(u"1.xml", SmallFile(""));
    Folder().Write(u"2.xml", "<broken");
    Folder().Write(u"3.xml", SmallFile(""));
    Folder().Write(u"entry.json", R"({"softwareId":"P","sections":[{"name":"S"}]})");
    const ToolRun run = Tool({"import", "1.xml", "2.xml", "3.xml", "entry.json", "--keep-going", "-v", "--diff", "-q"});
    EXPECT_EQ(run.exitCode, 2) << "either quiet or verbose";
    const ToolRun second = Tool({"import", "1.xml", "2.xml", "3.xml", "entry.json", "--keep-going", "-v", "--diff"});
    EXPECT_EQ(second.exitCode, 3);
    EXPECT_THAT(second.messages, MatchesPattern("2\\.xml:1:[0-9]+: [^\n]*\n"));
    EXPECT_THAT(second.out, testing::StartsWith("1.xml: changed\n--- 1.xml\n+++ 1.xml\n@@ "));
    EXPECT_THAT(second.out, HasSubstr("2 changed, 0 unchanged, 1 failed, 0 not done\n"));
    EXPECT_THAT(Bytes(u"3.xml"), HasSubstr("SoftwareID=\"P\""));
}

TEST_F(EntryFiles, ATaskThatShowPrintsWithoutFields_GetsThoseOfANewTask)
{
    Folder().Write(u"old.xml",
                   SmallFile("", "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='d'><Task/></TaskGroup>"));
    Folder().Write(u"new.xml", SmallFile(""));
    const json shown = json::parse(Out({"show", "old.xml", "--json"})).at("tasks")[0];
    EXPECT_EQ(shown.at("priority"), "");
    Folder().Write(u"entry.json", shown.dump());
    EXPECT_EQ(Tool({"import", "new.xml", "entry.json"}).exitCode, 0);
    const json task = json::parse(Out({"export", "new.xml", "P", "--task", "T"}));
    EXPECT_EQ(task.at("displayName"), "d");
    EXPECT_EQ(task.at("type"), "");
    EXPECT_EQ(task.at("priority"), "0");
}

}  // namespace
}  // namespace zupm::test
