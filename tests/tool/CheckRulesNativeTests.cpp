// Rules that are wrong themselves. They are read alike on both targets, and each row takes a run of the tool.
#include <nlohmann/json.hpp>

#include <filesystem>

#include "RulesTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

using BrokenRules = RulesTest;

TEST_F(BrokenRules, AreRefusedWithTheirPlaceBeforeAnyFileIsChecked)
{
    struct Row {
        const char* rules;
        const char* message;
    };
    const Row rows[] = {
        {"{\n\"properties\": {\"\xC3\xBC\": {\"requird\": []}}}",
         "2:22: rules have no word \"requird\"; did you mean \"required\"?"},
        {"{\n \"properties\": ", "2:16: syntax error"},
        {"[]", "1:1: a rule must be an object, true or false"},
        {R"({"const": 1})", "1:11: \"const\": all values are texts; write \"1\""},
        {R"({"type": "integer"})", "1:10: there is no type \"integer\" in a policy file"},
        {R"({"$ref": "http://example.org/x.json"})", "1:10: \"$ref\" must lead to a rule of this text"},
        {R"({"$ref": "other.json#/a"})", "1:10: \"$ref\" must lead to a rule of this text"},
        {R"({"$ref": "#/$defs/none"})", "1:10: there is no rule \"#/$defs/none\""},
        {R"({"$defs": {"a": {"anyOf": [{"$ref": "#/$defs/a"}]}}})", ": this rule leads to itself"},
        {R"({"pattern": "a(b"})", "1:13: the expression \"a(b\" is not valid at character 4: a bracket is not closed"},
        {R"x({"patternProperties": {"(?=a)": {}}})x", "1:24: the expression \"(?=a)\" is not valid"},
        {R"x({"pattern": "((a{1000}){1000})"})x", "repeats too much"},
        {R"({"x-severity": "info"})", R"(1:16: "x-severity" must be "error" or "warning")"},
        {R"({"minLength": -1})", "1:15: \"minLength\" must not be negative"},
        {"{\"title\": \"\xC3\xBC\",\n \"required\": [\"tasks\", \"polices\"]}",
         "2:24: a file has no \"polices\" here; did you mean \"policies\"?"},
        {R"({"required": ["PRODUCTA1000"]})",
         "1:15: a file has no \"PRODUCTA1000\" here; it has policyVersion, taskVersion, assignmentList, policies, "
         "tasks"},
        {R"({"dependentRequired": {"tasks": ["Policies"]}})", "1:34: a file has no \"Policies\" here"},
        {R"({"dependentRequired": {"task": []}})", "1:24: a file has no \"task\" here"},
        {R"({"not": {"properties": {"polices": {}}}})", "1:25: a file has no"},
        {R"({"anyOf": [true, {"if": {"required": ["polices"]}}]})", "1:39: a file has no"},
        {R"({"then": {"else": {"oneOf": [{"required": ["x"]}]}}})", "1:44: a file has no"},
        {R"({"$ref": "#/$defs/a", "$defs": {"a": {"allOf": [{"required": ["polices"]}]}}})", "1:63: a file has no"},
        {R"({"properties": {"tasks": {"properties": {"P": {"additionalProperties": {"required": ["dispalyName"]}}}}}})",
         "1:86: a task has no \"dispalyName\" here; did you mean \"displayName\"?"},
        {R"({"additionalProperties": {"patternProperties": {"": {"patternProperties": {"": {"required": ["x"]}}}}}})",
         "1:94: a task has no \"x\" here; it has displayName, type, platforms, priority, creator, version, sections"},
        {R"({"patternProperties": {"^t": {"additionalProperties": {"additionalProperties": {"required": ["x"]}}}}})",
         "1:94: a task has no"},
    };
    // Wrong in itself, so a word about it would mean that it was read.
    Folder().Write(u"small.xml", "<a>");
    for (const Row& row : rows) {
        EXPECT_THAT(Against(row.rules),
                    Fails(3, testing::AllOf(testing::StartsWith("zupolicy: rules.json:"), HasSubstr(row.message))))
            << row.rules;
    }
    const ToolRun run = Against("{,", {"--json"});
    EXPECT_EQ(json::parse(run.out).at("error").at("line"), 1);
}

TEST_F(BrokenRules, ALoopOfLinks_IsReportedLikeThatOfAPolicyFile)
{
    std::filesystem::create_symlink("loop.json", Folder().Folder() / "loop.json");
    const ToolRun run = Tool({"check", "policy.xml", "--rules", "loop.json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.messages, Tool({"get", "loop.json", "P", "S", "N"}).messages);
    EXPECT_THAT(Tool({"check", "policy.xml", "--rules", "a\xFF"}),
                Fails(3, "zupolicy: a\\xff: the name is not valid UTF-8\n"));
}

}  // namespace
}  // namespace zupm::test
