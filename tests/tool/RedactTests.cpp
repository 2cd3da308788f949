// Values that no output shows.
#include <nlohmann/json.hpp>

#include "EditsTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The secrets of the test: each value that must not be printed has one of these in it.
constexpr const char* kSecrets[] = {"geheim", "verborgen", "tresor"};

class Redact : public EditsTest {
protected:
    Redact()
    {
        Folder().Write(u"old.xml", File("geheim1", "verborgen1", "tresor1"));
        Folder().Write(u"new.xml", File("geheim2", "verborgen2", "tresor2"));
        Folder().Write(u"empty.xml", SmallFile(""));
        Folder().Write(u"rules.json",
                       R"({"properties": {"policies": {"properties": {"P": {"properties": {"Login": {"properties": {
                           "Password": {"allOf": [{"const": "geheim3"}, {"enum": ["geheim4", "x"]}, {"minLength": 50},
                                                  {"pattern": "geheim5"}, {"x-minimum": 5},
                                                  {"const": "", "x-message": "geheim1 is too easy"}]}}}}}}},
                           "tasks": {"additionalProperties": {"additionalProperties": {"properties": {
                               "displayName": {"const": ""},
                               "sections": {"properties": {"Task": {"properties": {"TaskName": {"const": ""}}},
                                                           "Vault": {"properties": {"Key": {"const": ""}}}}}}}}}}})");
    }
    [[nodiscard]] static std::string File(const std::string& one, const std::string& two, const std::string& three)
    {
        return SmallFile("<Product SoftwareID='P'><S name='Login'><s name='Password'>" + one +
                             "</s><s name='User'>anna</s></S></Product>",
                         "<TaskGroup SoftwareID='P' TaskID='T' DisplayName='" + two +
                             "' TaskType='Y'><Task><S name='Task'><s name='TaskName'>" + two +
                             "</s></S><S name='Vault'><s name='Key'>" + three + "</s></S></Task></TaskGroup>");
    }
    static void ExpectNoSecret(const ToolRun& run, const std::string& label)
    {
        for (const char* secret : kSecrets) {
            EXPECT_THAT(run.out + run.messages, Not(HasSubstr(secret))) << label;
        }
    }
    [[nodiscard]] ToolRun Hidden(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--redact", "Pass*", "--redact", "Vault/?ey", "--redact", "Task/TaskName"});
        return Tool(arguments);
    }
};

TEST_F(Redact, NoOutputOfAnyCommandShowsAHiddenValue)
{
    const std::vector<std::string> rows[] = {
        {"show", "old.xml"},
        {"show", "old.xml", "--json"},
        {"diff", "old.xml", "new.xml"},
        {"diff", "old.xml", "new.xml", "--json"},
        {"diff", "empty.xml", "new.xml", "--json"},
        {"query", "old.xml"},
        {"query", "old.xml", "--tsv"},
        {"query", "old.xml", "--json"},
        {"query", "old.xml", "new.xml", "--count", "--name", "Password"},
        {"check", "old.xml", "--rules", "rules.json"},
        {"check", "old.xml", "--rules", "rules.json", "--json"},
    };
    for (const std::vector<std::string>& row : rows) {
        const ToolRun run = Hidden(row);
        EXPECT_THAT(run.out + run.messages, HasSubstr("***")) << testing::PrintToString(row);
        ExpectNoSecret(run, testing::PrintToString(row));
    }
}

TEST_F(Redact, NoOutputOfACommandThatWritesShowsAHiddenValue)
{
    Folder().Write(u"edits.jsonl",
                   R"({"edit": "set", "softwareId": "P", "section": "Login", "name": "Password", "value": "geheim3"}
{"edit": "set", "softwareId": "P", "taskId": "T", "section": "Vault", "name": "Key", "value": "a\ntresor3\nb"}
{"edit": "set", "softwareId": "P", "taskId": "T", "fields": {"displayName": "verborgen3"}}
)");
    Folder().Write(u"entry.json", R"({"schema": 1, "kind": "policy", "softwareId": "P", "sections": [{"name": "Login",
        "settings": [{"name": "Password", "value": "geheim4"}]}]})");
    Folder().Write(u"old.xml.bak", Bytes(u"new.xml"));
    const std::vector<std::string> rows[] = {
        {"set", "old.xml", "P", "Login", "Password", "geheim3", "--dry-run"},
        {"set", "old.xml", "P", "Login", "Password", "geheim1\ngeheim3", "--dry-run", "--diff", "-v"},
        {"set", "old.xml", "P", "Vault", "Key", "tresor3", "--task", "T", "--display-name", "verborgen3", "-n"},
        {"set", "old.xml", "P", "Vault", "Key", "tresor3", "--task", "T", "--display-name", "verborgen3", "-n",
         "--diff", "--json"},
        {"remove", "old.xml", "P", "Login", "Password", "--json", "--diff", "-n"},
        {"remove", "old.xml", "P", "Login", "Password", "-n"},
        {"apply", "old.xml", "new.xml", "--edits", "edits.jsonl", "--dry-run", "-v"},
        {"apply", "old.xml", "--edits", "edits.jsonl", "--dry-run", "--diff", "--json"},
        {"import", "old.xml", "entry.json", "--replace", "--dry-run", "-v"},
        {"import", "old.xml", "entry.json", "--merge", "--diff"},
        {"restore", "old.xml", "--diff", "-v"},
        {"restore", "old.xml", "--diff", "--json"},
    };
    for (const std::vector<std::string>& row : rows) {
        const ToolRun run = Hidden(row);
        EXPECT_EQ(run.exitCode, 0) << testing::PrintToString(row);
        EXPECT_THAT(run.out, HasSubstr("***")) << testing::PrintToString(row);
        ExpectNoSecret(run, testing::PrintToString(row));
    }
}

TEST_F(Redact, ADifferenceOfTextsHasAChangedSecretAsOneLine)
{
    Folder().Write(u"lines.xml",
                   SmallFile("<Product SoftwareID='P'>\n<S name='Login'>\n<s name='Password'>geheim\n1</s>\n"
                             "<s name='User'>anna</s>\n</S>\n</Product>"));
    const ToolRun run = Hidden({"set", "lines.xml", "P", "Login", "Password", "geheim\n\n3", "--diff"});
    EXPECT_THAT(run.out, HasSubstr("\n <S name='Login'>\n-<s name='Password'>***</s>\n+<s name='Password'>***</s>\n"
                                   " <s name='User'>anna</s>\n"));
    const ToolRun other = Hidden({"set", "lines.xml", "P", "Login", "User", "berta", "--diff"});
    EXPECT_THAT(other.out, HasSubstr("\n <s name='Password'>***</s>\n-<s name='User'>anna</s>\n"));
    EXPECT_EQ(Hidden({"set", "old.xml", "P", "Login", "Password", "geheim1", "-n"}).out,
              "policy P: Login/Password: \"***\" (unchanged)\n");
    EXPECT_EQ(Hidden({"set", "old.xml", "P", "Login", "Password", "geheim2", "-n"}).out,
              "policy P: Login/Password: \"***\" -> \"***\"\n");
}

TEST_F(Redact, ABrokenFileIsHiddenAsAWhole)
{
    Folder().Write(u"old.xml.bak", Bytes(u"old.xml"));
    Folder().Write(u"old.xml", "<F>\n<S name='Login'/></S>\n<s name='Password'>geheim9</s>\n</F>\n");
    const ToolRun run = Hidden({"restore", "old.xml", "--diff", "-n"});
    EXPECT_THAT(run.out, HasSubstr("\n-***\n"));
    ExpectNoSecret(run, "a broken file");
}

TEST_F(Redact, NoMessageShowsAValueOfTheCommandLineOrOfEdits)
{
    Folder().Write(u"edits.jsonl", R"({"edit": "set", "value": "geheim\x"})");
    Folder().Write(u"entry.json", R"({"value": "geheim)");
    const std::vector<std::string> rows[] = {
        {"set", "old.xml", "P", "Login", "Password", "x", "geheim", "--json"},
        {"set", "old.xml", "P", "Login", "Password", "-geheim"},
        {"set", "old.xml", "P", "--task", "T", "--priority", "geheim"},
        {"set", "old.xml", "P", "Login", "Password", "geheim", "--output", "-"},
        {"apply", "old.xml", "--edits", "edits.jsonl", "--json"},
        {"import", "old.xml", "entry.json"},
    };
    for (const std::vector<std::string>& row : rows) {
        const ToolRun run = Hidden(row);
        EXPECT_TRUE(run.exitCode == 2 || run.exitCode == 3) << testing::PrintToString(row) << run.messages;
        ExpectNoSecret(run, testing::PrintToString(row));
    }
}

TEST_F(Redact, ADifferenceStaysOne_AndItsEditIsRefused)
{
    EXPECT_EQ(Hidden({"diff", "old.xml", "new.xml"}).out,
              "~ policy P Login/Password: \"***\" -> \"***\"\n"
              "~ task P T displayName: \"***\" -> \"***\"\n"
              "~ task P T Vault/Key: \"***\" -> \"***\"\n");
    const ToolRun edits = Hidden({"diff", "empty.xml", "new.xml", "--json"});
    EXPECT_EQ(edits.out.substr(0, edits.out.find('\n') + 1),
              "{\"schema\": 1, \"edit\": \"create\", \"softwareId\": \"P\", \"sections\": [{\"name\": \"Login\", "
              "\"settings\": [{\"name\": \"Password\", \"value\": \"***\"}, {\"name\": \"User\", \"value\": "
              "\"anna\"}]}], \"redacted\": true}\n");
    EXPECT_THAT(ApplyTo({"empty.xml"}, edits.out),
                Fails(3, HasSubstr("edits.jsonl:1:1: values of this edit are hidden")));
}

TEST_F(Redact, AnEntryThatWasShownWithHiddenValues_IsNotImported)
{
    const ToolRun run = Tool({"show", "policy.xml", "PRODUCTA1000", "--json", "--redact", "Enabled"});
    Folder().Write(u"entry.json", nlohmann::json::parse(run.out).at("policies").at(0).dump());
    EXPECT_THAT(Tool({"import", "policy.xml", "entry.json", "--replace"}),
                Fails(3, HasSubstr("values of this entry may be hidden")));
}

TEST_F(Redact, PatternsAreThoseOfQuery)
{
    // The case of letters counts, and a pattern without a slash is one of names alone.
    const ToolRun run = Tool({"query", "old.xml", "--redact", "password", "--redact", "Vault", "--redact", "*/User"});
    EXPECT_THAT(run.out, testing::AllOf(HasSubstr("geheim1"), HasSubstr("tresor1"), HasSubstr("Login/User: \"***\"")));
}

TEST_F(Redact, APatternThatHidesNothing_IsNamed)
{
    const std::string message = "zupolicy: --redact \"Pasword\" hides nothing\n";
    const auto with = [&](std::vector<std::string> line) {
        line.insert(line.end(), {"--redact", "Pasword", "--redact", "Password"});
        return Tool(line).messages;
    };
    Folder().Write(u"edits.jsonl",
                   R"({"edit": "set", "softwareId": "P", "section": "Login", "name": "Password", "value": "geheim3"})");
    Folder().Write(u"entry.json", R"({"softwareId": "P", "sections": [{"name": "Login",
        "settings": [{"name": "Password", "value": "geheim4"}]}]})");
    Folder().Write(u"old.xml.bak", Bytes(u"new.xml"));
    for (const std::vector<std::string>& row : {std::vector<std::string>{"show", "old.xml"},
                                                {"diff", "old.xml", "new.xml"},
                                                {"query", "old.xml"},
                                                {"report", "old.xml", "-o", "page.html"},
                                                {"set", "old.xml", "P", "Login", "Password", "geheim3", "-o", "x.xml"},
                                                {"remove", "old.xml", "P", "Login", "Password", "-n"},
                                                {"apply", "old.xml", "--edits", "edits.jsonl"},
                                                {"import", "old.xml", "entry.json", "--merge", "-n"},
                                                {"restore", "old.xml", "--diff", "-n"}}) {
        EXPECT_EQ(with(row), message) << row.front();
    }
    EXPECT_THAT(with({"check", "old.xml", "--rules", "rules.json"}), testing::EndsWith("\n" + message));
    EXPECT_EQ(with({"set", "old.xml", "P", "Login", "Password", "geheim3", "-o", "x.xml", "-q"}), "");
    EXPECT_EQ(Tool({"show", "old.xml", "--redact", "Pass*", "--redact", "Login/Password"}).messages, "")
        << "each hides the value";
    // Where no value is looked at, there is nothing to hide.
    EXPECT_EQ(with({"diff", "old.xml", "old.xml"}), "");
}

TEST_F(Redact, AnEmptyPatternIsRefused)
{
    EXPECT_THAT(Tool({"show", "old.xml", "--redact", ""}),
                Fails(2, testing::StartsWith("zupolicy: --redact: the pattern is empty, and would hide nothing\n")));
    EXPECT_THAT(Tool({"show", "--redact=", "old.xml"}),
                Fails(2, testing::StartsWith("zupolicy: --redact= has no value\n")));
}

TEST_F(Redact, CountTakesHiddenValuesForOne)
{
    EXPECT_EQ(Hidden({"query", "old.xml", "new.xml", "--count", "--name", "Password"}).out, "\"***\": 2 files\n");
}

}  // namespace
}  // namespace zupm::test
