// The form of edits: what is refused, and where the complaint points.
#include <nlohmann/json.hpp>

#include "EditsTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;

class EditForm : public EditsTest {};

struct BadEdit {
    const char* text;
    const char* complaint;
};

constexpr BadEdit kBadEdits[] = {
    {"[]", "1:1: an edit must be an object"},
    {"5", "1:1: an edit must be an object"},
    {"{}", "1:1: an edit needs the member \"edit\""},
    {"\n\n  {}", "3:3: an edit needs the member \"edit\""},
    {R"({"edit":"set"})", "1:1: an edit needs the member \"softwareId\""},
    {R"({"edit":"move","softwareId":"P"})", "1:9: there is no edit \"move\": set, absent or create"},
    {R"({"edit":"unsupported","what":"policyVersion","before":"1","after":"2"})",
     "1:1: no edit can make this difference; compare with --ignore-versions to leave out versions"},
    {R"({"edit":1})", "1:9: \"edit\" must be a text"},
    {R"({"schema":2,"edit":"set"})", "1:11: \"schema\" must be 1: this program knows no other form of edits"},
    {R"({"schema":"1","edit":"set"})", "1:11: \"schema\" must be 1: this program knows no other form of edits"},
    {R"({"schema":1.5,"edit":"set"})", "1:11: \"schema\" must be 1: this program knows no other form of edits"},
    {R"({"edit":"set","softwareId":"P","section":"S","name":"n"})", "1:1: \"name\" and \"value\" belong together"},
    {R"({"edit":"set","softwareId":"P","section":"S","value":"n"})", "1:1: \"name\" and \"value\" belong together"},
    {R"({"edit":"set","softwareId":"P","name":"n","value":"v"})", "1:1: an edit needs the member \"section\""},
    {R"({"edit":"set","softwareId":"P"})", "1:1: an edit needs the member \"section\""},
    {R"({"edit":"set","softwareId":"P","section":"S","name":null,"value":"v"})", "1:53: \"name\" must be a text"},
    {R"({"edit":"set","softwareId":"P","section":"S","name":"n","value":7})", "1:65: \"value\" must be a text"},
    {R"({"edit":"set","softwareId":"P","section":["S"]})", "1:42: \"section\" must be a text"},
    {"{\"edit\":\"set\",\"softwareId\":\"\xC3\xBC\xF0\x9F\x9A\x80\",\"section\":{}}",
     "1:43: \"section\" must be a text"},
    {R"({"edit":"set","softwareId":"P","section":"S","Value":"v"})", "1:46: an edit has no member \"Value\""},
    {R"({"edit":"set","softwareId":"P","section":"S", "sections":[]})", "1:47: an edit has no member \"sections\""},
    {R"({"edit":"absent","softwareId":"P","section":"S","name":"n","value":"v"})",
     "1:60: an edit has no member \"value\""},
    {R"({"edit":"absent","softwareId":"P","name":"n"})", "1:1: \"name\" needs the member \"section\""},
    {R"({"edit":"create","softwareId":"P","section":"S"})", "1:35: an edit has no member \"section\""},
    {R"({"edit":"create","softwareId":"P","before":1})", "1:35: an edit has no member \"before\""},
    {R"({"edit":"create","softwareId":"P","type":"x"})",
     "1:1: only a task has fields: the member \"taskId\" is missing"},
    {R"({"edit":"set","softwareId":"P","fields":{"type":"x"}})",
     "1:1: only a task has fields: the member \"taskId\" is missing"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{}})", "1:54: \"fields\" names no field"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":[]})", "1:54: \"fields\" must be an object"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"type":"x","name":"y"}})",
     "1:66: \"fields\" has no member \"name\""},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"type":"x"},"section":"S"})",
     "1:67: an edit has no member \"section\""},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"priority":"5 "}})",
     "1:66: \"priority\" must be a whole number of 32 bits"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"priority":2147483648}})",
     "1:66: \"priority\" must be a whole number of 32 bits"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"priority":99999999999999999999}})",
     "1:66: \"priority\" must be a whole number of 32 bits"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"priority":1.5}})",
     "1:66: \"priority\" must be a whole number of 32 bits"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"type":1}})", "1:62: \"type\" must be a text"},
    {R"({"edit":"create","softwareId":"P","sections":{}})", "1:46: \"sections\" must be an array"},
    {R"({"edit":"create","softwareId":"P","sections":[1]})", "1:47: a section must be an object"},
    {R"({"edit":"create","softwareId":"P","sections":[{}]})", "1:47: a section needs the member \"name\""},
    {R"({"edit":"create","softwareId":"P","sections":[{"name":"S","x":1}]})", "1:59: a section has no member \"x\""},
    {R"({"edit":"create","softwareId":"P","sections":[{"name":"S"}, {"name":"S"}]})",
     "1:61: the section \"S\" occurs again"},
    {R"({"edit":"create","softwareId":"P","sections":[{"name":"S","settings":5}]})",
     "1:70: \"settings\" must be an array"},
    {R"({"edit":"create","softwareId":"P","sections":[{"name":"S","settings":[{"name":"n"}]}]})",
     "1:71: a setting needs the member \"value\""},
    {R"({"edit":"create","softwareId":"P","sections":[{"name":"S","settings":[{"name":"n","value":"1"},{"name":"n","value":"1"}]}]})",
     "1:96: the setting \"n\" occurs again"},
    {R"({"edit":"set","edit":"set"})", "1:15: the member \"edit\" occurs again"},
    {R"({"edit":"create","softwareId":"P","sections":[{"b":1,"b":1}]})", "1:54: the member \"b\" occurs again"},
    {R"({"edit":"create","softwareId":"P","sections":[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]})",
     "1:61: the value is nested too deeply"},
    {R"({"edit":"absent","softwareId":"P","before":1e})",
     "1:46: syntax error while parsing value - invalid number; expected '+', '-', or digit after exponent; last read: "
     "'1e}'"},
    {R"({"edit":"absent","softwareId":"P","section":1e999})", "1:45: \"section\" must be a text"},
    {R"({"edit":"set","softwareId":"P","taskId":"T","fields":{"priority":"99999999999"}})",
     "1:66: \"priority\" must be a whole number of 32 bits"},
    {R"({"edit":"set","softwareId":"P","section":"\u0000"})",
     "1:42: \"section\" holds a character that XML cannot hold: U+0000, character 1"},
    {R"({"edit":"set","softwareId":"P","section":"S","name":"a\u001fb","value":""})",
     "1:53: \"name\" holds a character that XML cannot hold: U+001F, character 2"},
    {R"({"edit":"set","softwareId":"P","section":"S","name":"n","value":"\uffff"})",
     "1:65: \"value\" holds a character that XML cannot hold: U+FFFF, character 1"},
    {R"({"edit":"absent","softwareId":"\ufffe"})",
     "1:31: \"softwareId\" holds a character that XML cannot hold: U+FFFE, character 1"},
};

TEST_F(EditForm, EachFault_IsRefusedAtItsPlaceBeforeAnyFileIsTouched)
{
    const std::string before = Bytes();
    for (const BadEdit& row : kBadEdits) {
        EXPECT_THAT(Apply(row.text),
                    Fails(3, "zupolicy: edits.jsonl:" + std::string(row.complaint) + " [SyntaxError, 0xFFFFFBAE]\n"))
            << row.text;
    }
    EXPECT_EQ(Bytes(), before);
}

TEST_F(EditForm, TheStateBefore_MayBeAnyJson)
{
    const ToolRun run = Apply(R"({"edit":"absent","softwareId":"P","before":1e999})"
                              "\n"
                              R"({"edit":"absent","softwareId":"P","before":{"a":[{"b":1,"b":-1E+999}],"a":"1e999"}})"
                              "\n"
                              R"({"before":[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]],"edit":"absent","softwareId":"P"})"
                              "\n"
                              R"({"edit":"absent","softwareId":"P","before":"\"1e999","section":"S"})"
                              "\n"
                              R"({"schema":1.0,"edit":"absent","softwareId":"P"})");
    EXPECT_EQ(run.messages, "");
    EXPECT_THAT(run.out, testing::StartsWith("policy.xml: unchanged\n"));
}

TEST_F(EditForm, NullCharacterAfterAnEdit_IsRefusedWithItsPlace)
{
    using namespace std::string_literals;
    const std::string before = Bytes();
    const std::string edit = R"({"edit":"absent","softwareId":"PRODUCTB2000"})";
    EXPECT_THAT(Apply(edit + "\0{\"edit\":\"absent\"}\n"s),
                Fails(3, "zupolicy: edits.jsonl:1:46: a null character is not JSON [SyntaxError, 0xFFFFFBAE]\n"));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(EditForm, WhatIsNoJson_IsRefusedWithAPlace)
{
    struct Row {
        const char* text;
        const char* place;
    };
    const Row rows[] = {
        {"{", "1:2"},
        {"{\"edit\":\"set\"} x", "1:16"},
        {"{'edit':'set'}", "1:2"},
        {"{\"edit\":\"set\",}", "1:15"},
        {"{\"edit\":nul}", "1:12"},
        {"{\"edit\":\"a\nb\"}", "1:11"},
        {"{}{}", "1:3"},
        {"{\"edit\":\"\\ud800\"}", "1:16"},
        {"{\"edit\":\"\xFF\"}", "1:10"},
        {"{\"edit\":\"\xED\xA0\x80\"}", "1:11"},
        {"\xEF\xBB\xBF{", "1:2"},
        {" \xEF\xBB\xBF{}", "1:2"},
    };
    for (const Row& row : rows) {
        const ToolRun run = Apply(row.text);
        EXPECT_EQ(run.exitCode, 3) << row.text;
        EXPECT_THAT(run.messages,
                    testing::StartsWith("zupolicy: edits.jsonl:" + std::string(row.place) + ": syntax error"))
            << row.text;
    }
}

TEST_F(EditForm, AMarkOfUtf8AndLineEndsOfWindows_AreTaken)
{
    EXPECT_EQ(Apply("\xEF\xBB\xBF{\"edit\":\"create\",\"softwareId\":\"A\"}\r\n\r\n"
                    "{\"edit\":\"create\",\"softwareId\":\"B\"}\r\n")
                  .exitCode,
              0);
    EXPECT_EQ(Made(), "+ policy A\n+ policy B\n");
}

TEST_F(EditForm, BadEdits_AreAnErrorInJson)
{
    const ToolRun run = Apply("{\"edit\":\"set\"}\n{\"edit\":1}", {"--json"});
    EXPECT_EQ(run.exitCode, 3);
    const json parsed = json::parse(run.out);
    EXPECT_EQ(parsed.at("schema"), 1);
    EXPECT_EQ(parsed.at("error").at("file"), "edits.jsonl");
    EXPECT_EQ(parsed.at("error").at("line"), 1);
    EXPECT_EQ(parsed.at("error").at("column"), 1);
    EXPECT_EQ(parsed.at("error").at("message"), "an edit needs the member \"softwareId\"");
}

}  // namespace
}  // namespace zupm::test
