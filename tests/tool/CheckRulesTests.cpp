// Policy files against rules.
#include <nlohmann/json.hpp>

#include <filesystem>

#include "RulesTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class CheckRules : public RulesTest {
protected:
    /// The rules of the settings in section S of policy P.
    [[nodiscard]] static std::string OfSettings(const json& properties)
    {
        const json section = {{"properties", properties}};
        const json policy = {{"properties", {{"S", section}}}};
        return json{{"properties", {{"policies", {{"properties", {{"P", policy}}}}}}}}.dump();
    }
    /// A file whose policy P has these settings in section S, each on a line of its own.
    void WriteSettings(const std::vector<std::pair<std::string, std::string>>& settings) const
    {
        std::string body = "<Product SoftwareID='P'><S name='S'>\n";
        for (const auto& [name, value] : settings) {
            body += "<s name='" + name + "'>" + value + "</s>\n";
        }
        Folder().Write(u"small.xml", SmallFile(body + "</S></Product>\n"));
    }
};

TEST_F(CheckRules, TheExample_FitsTheSampleAndReportsEveryMistakeAtOnce)
{
    EXPECT_EQ(Out({"check", "--rules", ZUPM_RULES, "policy.xml"}), "");
    Folder().Write(u"bad.xml", SmallFile(R"(<Product SoftwareID="PRODUCTA1000">
  <Section name="General">
    <Setting name="ScanInterval">9x</Setting>
    <Setting name="Enabled">0</Setting>
  </Section>
  <Section name="Notify">ü<Setting name="Recipients">root</Setting>
    <Setting name="Sound">1</Setting>
  </Section>
</Product>
<Product SoftwareID="PRODUCTB2000">
  <Section name="General"><Setting name="LogLevel">9</Setting></Section>
  <Section name="Proxy"><Setting name="User">u</Setting></Section>
</Product>
<Product SoftwareID="OTHER"/>
)",
                                         "<TaskGroup SoftwareID='P' TaskID='{t}' TaskPriority='50'>\n"
                                         "<Task><S name='Schedule'><s name='Hour'>24</s></S></Task></TaskGroup>\n"));
    const ToolRun run = Tool({"check", "--rules", ZUPM_RULES, "bad.xml", "policy.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages, R"(bad.xml:7:5: policy PRODUCTA1000 General/ScanInterval: is "9x", must be a whole number
bad.xml:8:5: policy PRODUCTA1000 General/Enabled: the scanner must be switched on
bad.xml:10:27: policy PRODUCTA1000 Notify/Recipients: is "root", must match "^[^@ ]+@example\.org(;[^@ ]+@example\.org)*$"
bad.xml:11:5: policy PRODUCTA1000 Notify/Sound: is not allowed
bad.xml:15:27: warning: policy PRODUCTB2000 General/LogLevel: is "9", must be one of "0", "1", "2", "3"
bad.xml:16:3: policy PRODUCTB2000 Proxy/Host: is missing, and "User" needs it
bad.xml:18:1: policy OTHER: its name is "OTHER", must match "^PRODUCT[A-Z][0-9]{4}$"
bad.xml:23:1: task P {t} displayName: is "", must have at least 1 character
bad.xml:23:1: task P {t} priority: is "50", must be at most 10
bad.xml:24:26: task P {t} Schedule/Hour: is "24", must be at most 23
)");
}

TEST_F(CheckRules, Json_HasEachProblemWithItsPlace)
{
    WriteSettings({{"a/~b", "1"}, {"c", "2"}});
    const ToolRun run = Against(OfSettings({{"a/~b", {{"const", "x"}, {"x-message", "no"}}},
                                            {"c", {{"const", "x"}, {"x-severity", "warning"}}}}),
                                {"--json"});
    EXPECT_EQ(run.exitCode, 3);
    const json report = json::parse(run.out).at("files").at(0);
    EXPECT_EQ(report.at("ok"), true);
    EXPECT_EQ(report.at("settings"), 2);
    EXPECT_EQ(report.at("problems"), json::parse(R"([
        {"severity": "error", "line": 6, "column": 1, "path": "policy P S/a/~b",
         "pointer": "/policies/P/S/a~1~0b", "message": "no"},
        {"severity": "warning", "line": 7, "column": 1, "path": "policy P S/c",
         "pointer": "/policies/P/S/c", "message": "is \"2\", must be \"x\""}])"));
}

TEST_F(CheckRules, Warnings_FailOnlyWithStrict)
{
    WriteSettings({{"n", "1"}});
    const std::string rules = OfSettings({{"n", {{"const", "2"}, {"x-severity", "warning"}}}});
    const ToolRun run = Against(rules);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "small.xml:6:1: warning: policy P S/n: is \"1\", must be \"2\"\n");
    EXPECT_EQ(Against(rules, {"--strict"}).exitCode, 3);
    // A rule inside takes the severity of the one around it, unless it has its own.
    const ToolRun inherited = Against(
        R"({"x-severity": "warning", "properties": {"policyVersion": {"const": "9"}, "policies": {"required": ["A"]},
                    "tasks": {"x-severity": "error", "required": ["B"]}}})");
    EXPECT_EQ(inherited.exitCode, 3);
    EXPECT_EQ(inherited.messages,
              "small.xml:2:1: warning: policy A: is missing\n"
              "small.xml:2:1: warning: policyVersion: is \"0\", must be \"9\"\n"
              "small.xml:11:1: the tasks of B: is missing\n");
}

TEST_F(CheckRules, EveryWord_IsChecked)
{
    WriteSettings({{"t", "abc"}, {"n", "-5"}, {"u", "\xC3\xBC\xC3\xBC"}, {"e", ""}});
    struct Row {
        const char* rule;
        const char* message;  ///< of setting t; empty for none
    };
    const Row rows[] = {
        {R"({"const": "abc"})", ""},
        {R"({"const": "ABC"})", R"(is "abc", must be "ABC")"},
        {R"({"enum": ["x", "abc"]})", ""},
        {R"({"enum": []})", R"(is "abc", must be one of )"},
        {R"({"pattern": "b"})", ""},
        {R"({"pattern": "^b"})", R"(is "abc", must match "^b")"},
        {R"({"minLength": 3, "maxLength": 3})", ""},
        {R"({"minLength": 4})", R"(is "abc", must have at least 4 characters)"},
        {R"({"maxLength": 2})", R"(is "abc", must have at most 2 characters)"},
        {R"({"x-minimum": 1})", R"(is "abc", must be a whole number)"},
        {R"({"type": "string"})", ""},
        {R"({"type": ["object", "string"]})", ""},
        {R"({"type": "object"})", "must be an object, not a text"},
        {R"({"required": ["x"], "minProperties": 1, "properties": {"x": false}})", ""},
        {"true", ""},
        {"false", "is not allowed"},
        {R"({"not": {"const": "abc"}})", "is what it must not be"},
        {R"({"not": {"const": "x"}})", ""},
        {R"({"anyOf": [{"const": "x"}, {"const": "abc"}]})", ""},
        {R"({"anyOf": [{"const": "x"}, {"const": "y"}]})", "fits none of the alternatives"},
        {R"({"oneOf": [{"const": "x"}, {"const": "abc"}]})", ""},
        {R"({"oneOf": [{}, {"const": "abc"}]})", "fits 2 of the alternatives, must fit one"},
        {R"({"oneOf": [false]})", "fits none of the alternatives, must fit one"},
        {R"({"allOf": [{"minLength": 1}, {"maxLength": 2}]})", R"(is "abc", must have at most 2 characters)"},
        {R"({"if": {"pattern": "^a"}, "then": {"maxLength": 1}, "else": false})",
         R"(is "abc", must have at most 1 character)"},
        {R"({"if": {"pattern": "^b"}, "then": false, "else": {"maxLength": 1}})",
         R"(is "abc", must have at most 1 character)"},
        {R"({"if": {"pattern": "^b"}, "then": false})", ""},
        {R"({"$ref": "#/$defs/x~1y"})", R"(is "abc", must be "q")"},
        {R"({"$ref": "#/$defs/x~1y", "x-message": "only beside it"})", R"(is "abc", must be "q")"},
        {R"({"const": "z", "minLength": 9, "x-message": "wrong"})", "wrong"},
    };
    // All rows are rules of one setting, by turns: so all of them take one run.
    json all = json::array();
    std::string expected;
    for (const Row& row : rows) {
        all.push_back(json::parse(row.rule));
        const std::string line = "small.xml:6:1: policy P S/t: " + std::string(row.message) + "\n";
        expected += std::string(row.message).empty() ? "" : line;
        expected += std::string(row.message) == "wrong" ? line : "";
    }
    json rules = json::parse(OfSettings({{"t", {{"allOf", all}}}}));
    rules["$defs"] = {{"x/y", {{"const", "q"}}}};
    EXPECT_EQ(Against(rules.dump()).messages, expected);
}

TEST_F(CheckRules, NumbersAndObjects_AreChecked)
{
    WriteSettings({{"a", "-5"},
                   {"b", "+7"},
                   {"c", "99999999999999999999"},
                   {"d", "-99999999999999999999"},
                   {"e", "1.5"},
                   {"f", ""},
                   {"g", "\xC3\xBC\xC3\xBC"}});
    const json number = {{"x-minimum", -5}, {"x-maximum", 7}};
    json rules = json::parse(OfSettings({{"a", number},
                                         {"b", number},
                                         {"c", number},
                                         {"d", number},
                                         {"e", number},
                                         {"f", number},
                                         {"g", {{"maxLength", 2}}}}));
    json& section = rules["properties"]["policies"]["properties"]["P"]["properties"]["S"];
    section["minProperties"] = 8;
    section["maxProperties"] = 6;
    section["patternProperties"] = {{"^[ab]$", {{"const", "-5"}}}};
    section["additionalProperties"] = false;
    section["propertyNames"] = {{"not", {{"const", "g"}}}};
    section["required"] = {"y", "z"};
    EXPECT_EQ(Against(rules.dump()).messages,
              R"(small.xml:5:25: policy P S/y: is missing
small.xml:5:25: policy P S/z: is missing
small.xml:5:25: policy P section S: has 7 entries, must have at least 8
small.xml:5:25: policy P section S: has 7 entries, must have at most 6
small.xml:7:1: policy P S/b: is "+7", must be "-5"
small.xml:8:1: policy P S/c: is "99999999999999999999", must be at most 7
small.xml:9:1: policy P S/d: is "-99999999999999999999", must be at least -5
small.xml:10:1: policy P S/e: is "1.5", must be a whole number
small.xml:11:1: policy P S/f: is "", must be a whole number
small.xml:12:1: policy P S/g: its name is what it must not be
)");
}

TEST_F(CheckRules, Patterns_AreThoseOfEcmaScript)
{
    struct Row {
        const char* pattern;
        const char* text;
        bool fits;
    };
    const Row rows[] = {
        {"", "", true},
        {"a", "xax", true},
        {"^a$", "a", true},
        {"^a$", "aa", false},
        {"^(ab|cd)+$", "abcdab", true},
        {"^(ab|cd)+$", "abc", false},
        {"^a{2,3}$", "aa", true},
        {"^a{2,3}$", "aaaa", false},
        {"^a{2,}$", "a", false},
        {"^a{2}$", "aa", true},
        {"^{t}$", "{t}", true},
        {"^a?b*?c$", "bbc", true},
        {"^(a*)*$", "aaaa", true},
        {"^[a-c_.-]+$", "ab.-_", true},
        {"^[^a-c]$", "b", false},
        {"^[\\d\\-x]+$", "1-x", true},
        {"^\\d+\\.\\w+$", "12.a_9", true},
        {"^\\D\\W\\S$", "a-1", true},
        {"^\\s$", "\xC2\xA0", true},
        {"^.$", "\xF0\x9F\x9A\x80", true},
        {"^..$", "\xF0\x9F\x9A\x80", false},
        {"^[\xC3\xA4-\xC3\xBC]$", "\xC3\xB6", true},
        {"^\\u00fc\\x41$", "\xC3\xBC\x41", true},
        {"\\bcat\\b", "a cat sits", true},
        {"\\bcat\\b", "concatenate", false},
        {"\\Bcat", "concatenate", true},
        {"^(?:a|b|)c$", "c", true},
        {"a|^b$|", "x", true},
        {"^\\/\\$\\^\\{$", "/$^{", true},
    };
    std::vector<std::pair<std::string, std::string>> settings;
    json rules;
    std::string expected;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const std::string name = "n" + std::to_string(i);
        settings.emplace_back(name, rows[i].text);
        rules[name] = {{"pattern", rows[i].pattern}, {"x-message", "no fit"}};
        if (!rows[i].fits) {
            expected += "small.xml:" + std::to_string(6 + i) + ":1: policy P S/" + name + ": no fit\n";
        }
    }
    WriteSettings(settings);
    EXPECT_EQ(Against(OfSettings(rules)).messages, expected);
}

TEST_F(CheckRules, PatternOnALongValue_EndsSoon)
{
    WriteSettings({{"n", std::string(2'000'000, 'a')}});
    EXPECT_EQ(Against(OfSettings({{"n", {{"pattern", "^(a+)+$"}}}})).exitCode, 0);
    EXPECT_EQ(Against(OfSettings({{"n", {{"pattern", "^(a|aa|a*)*b$"}, {"x-message", "m"}}}})).messages,
              "small.xml:6:1: policy P S/n: m\n");
}

TEST_F(CheckRules, NamesThatEveryFileHas_MustBeRight)
{
    const ToolRun run = Against(R"({"properties": {"polices": {"required": ["A"]}}})", {"--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.messages,
              "zupolicy: rules.json:1:17: a file has no \"polices\" here; did you mean \"policies\"? "
              "[SyntaxError, 0xFFFFFBAE]\n");
    const json error = json::parse(run.out).at("error");
    EXPECT_EQ(error.at("line"), 1);
    EXPECT_EQ(error.at("column"), 17);
}

TEST_F(CheckRules, EveryNameThatAFileHas_IsTakenWhereverItIs)
{
    // Names that may be any are those of products, tasks, sections and settings.
    Folder().Write(u"rules.json", R"({
        "required": ["policyVersion", "taskVersion", "assignmentList", "policies", "tasks"],
        "dependentRequired": {"tasks": ["policies"]},
        "patternProperties": {"^polic": {}, "^tasks$": {"$ref": "#/$defs/tasks"}},
        "properties": {
          "policies": {"properties": {"polices": {}, "PRODUCTA1000": {"properties": {"dispalyName": {}}}},
                       "additionalProperties": {"propertyNames": {"minLength": 1}}},
          "tasks": {"properties": {"sections": {"properties": {"name": {}}}}}},
        "additionalProperties": {"minLength": 1},
        "$defs": {
          "tasks": {"additionalProperties": {"patternProperties": {"^[{]": {"allOf": [{"$ref": "#/$defs/task"}]}}}},
          "task": {"required": ["displayName", "type", "platforms", "priority", "creator", "version", "sections"],
                   "properties": {"sections": {"properties": {"displayNam": {"required": ["typ"]}}}}},
          "unused": {"properties": {"nobody": {"required": ["asks"]}}}}})");
    EXPECT_EQ(Out({"check", "policy.xml", "--rules", "rules.json"}), "");
}

TEST_F(CheckRules, RulesThatCannotBeRead_AreReportedLikeAPolicyFile)
{
    const ToolRun run = Tool({"check", "--rules", "none.json", "policy.xml", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.messages, "zupolicy: none.json: The file does not exist. [FileNotFound, 0x80070002]\n");
    EXPECT_EQ(json::parse(run.out).at("error").at("file"), "none.json");
    std::filesystem::create_directory(Folder().Folder() / "folder");
    for (const char* const name : {"none.json", "folder"}) {
        EXPECT_EQ(Tool({"check", "policy.xml", "--rules", name}).messages, Tool({"get", name, "P", "S", "N"}).messages);
    }
}

TEST_F(CheckRules, StandardInput_HasTheRulesOrAFile)
{
    Folder().Write(u"rules.json", R"({"properties": {"policies": {"required": ["NONE"]}}})");
    const ToolRun run = ToolReading(u"rules.json", {"check", "policy.xml", "--rules", "-"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages, MatchesPattern("policy\\.xml:[0-9]+:[0-9]+: policy NONE: is missing\n"));
    Folder().Write(u"rules.json", "{\n,");
    EXPECT_THAT(ToolReading(u"rules.json", {"check", "policy.xml", "--rules", "-"}),
                Fails(3, testing::StartsWith("zupolicy: -:2:1: ")));
    EXPECT_THAT(ToolReading(u"rules.json", {"check", "missing.xml", "-", "--rules", "-"}),
                Fails(2, "zupolicy: -: standard input can be read only once: as FILE or as the rules\n"));
}

}  // namespace
}  // namespace zupm::test
