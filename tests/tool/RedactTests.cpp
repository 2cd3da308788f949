// Values that no output shows.
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
        const std::string label = testing::PrintToString(row);
        EXPECT_THAT(run.out + run.messages, HasSubstr("***")) << label;
        for (const char* secret : kSecrets) {
            EXPECT_THAT(run.out + run.messages, Not(HasSubstr(secret))) << label;
        }
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

TEST_F(Redact, PatternsAreThoseOfQuery)
{
    // The case of letters counts, and a pattern without a slash is one of names alone.
    const ToolRun run = Tool({"query", "old.xml", "--redact", "password", "--redact", "Vault", "--redact", "*/User"});
    EXPECT_THAT(run.out, testing::AllOf(HasSubstr("geheim1"), HasSubstr("tresor1"), HasSubstr("Login/User: \"***\"")));
}

TEST_F(Redact, CountTakesHiddenValuesForOne)
{
    EXPECT_EQ(Hidden({"query", "old.xml", "new.xml", "--count", "--name", "Password"}).out, "\"***\": 2 files\n");
}

}  // namespace
}  // namespace zupm::test
