// Rules that are wrong themselves. They are read alike on both targets, and each row takes a run of the tool.
#include <nlohmann/json.hpp>

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
    };
    // Wrong in itself, so a word about it would mean that it was read.
    Folder().Write(u"small.xml", "<a>");
    for (const Row& row : rows) {
        EXPECT_THAT(Against(row.rules),
                    Fails(3, testing::AllOf(testing::StartsWith("zupolicy: rules.json:"), HasSubstr(row.message))))
            << row.rules;
    }
    EXPECT_THAT(Tool({"check", "--rules", "none.json", "small.xml"}),
                Fails(3, "zupolicy: none.json: the rules cannot be read\n"));
    const ToolRun run = Against("{,", {"--json"});
    EXPECT_EQ(json::parse(run.out).at("error").at("line"), 1);
}

}  // namespace
}  // namespace zupm::test
