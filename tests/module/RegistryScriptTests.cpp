// Registration scripts: the reader.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <variant>

#include "module/ModuleObjects.h"
#include "module/ModulePlatform.h"
#include "module/RegistryScript.h"

namespace zupm::test {
namespace {

/// A script's keys, one a line: mark for the rule, mark for removal, path, values.
std::string Show(const RegistryScript& script)
{
    std::string shown;
    for (const ScriptKey& key : script) {
        shown += key.rule == ScriptRule::NoRemove ? 'N' : key.rule == ScriptRule::ForceRemove ? 'F' : '-';
        shown += key.isRemovalRoot ? '*' : ' ';
        shown += std::string(key.path.begin(), key.path.end());
        for (const ScriptValue& value : key.values) {
            shown += " [" + std::string(value.name.begin(), value.name.end()) + "=" +
                     std::string(value.text.begin(), value.text.end()) + "]";
        }
        shown += "\n";
    }
    return shown;
}

struct GoodRow {
    std::string_view script;
    std::string_view keys;
};

const GoodRow kGoodRows[] = {
    {"HKCR{}", ""},
    {" \t\r\nHKCR\n{\n}\n", ""},
    {"HKCR{a}", "-*a\n"},
    {"HKCR { a = 'x' }", "-*a [=x]\n"},
    {"HKCR { a b c }", "-*a\n-*b\n-*c\n"},
    {"HKCR { 'a b' }", "-*a b\n"},
    {"HKCR { '{1-2}' = '' }", "-*{1-2} [=]\n"},
    {"HKCR { 'it''s' = 'a''''b' }", "-*it's [=a''b]\n"},
    {"HKCR { a { b = 'x' { c } d } e }", "-*a\n- a\\b [=x]\n- a\\b\\c\n- a\\d\n-*e\n"},
    {"HKCR { NoRemove a { b NoRemove c { d } ForceRemove e { f } } }",
     "N a\n-*a\\b\nN a\\c\n-*a\\c\\d\nF*a\\e\n- a\\e\\f\n"},
    {"HKCR { ForceRemove a { ForceRemove b } }", "F*a\nF a\\b\n"},
    {"HKCR { a { val v = 'x' val 'w w' = 'y' } }", "-*a [v=x] [w w=y]\n"},
    {"HKCR { a = 'd' { b val v = 'x' } }", "-*a [=d] [v=x]\n- a\\b\n"},
    {"HKCR { a = '%MODULE%' { val m = '<%MODULE%>%MODULE%' } }", "-*a [=M'%x] [m=<M'%x>M'%x]\n"},
    {"HKCR { 'val' 'NoRemove' HKCR }", "-*val\n-*NoRemove\n-*HKCR\n"},
    {"HKCR{a{b{c{d{e{f{g{h{i{j{k{l{m{n{o{p}}}}}}}}}}}}}}}}",
     "-*a\n- a\\b\n- a\\b\\c\n- a\\b\\c\\d\n- a\\b\\c\\d\\e\n- a\\b\\c\\d\\e\\f\n- a\\b\\c\\d\\e\\f\\g\n"
     "- a\\b\\c\\d\\e\\f\\g\\h\n- a\\b\\c\\d\\e\\f\\g\\h\\i\n- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\n"
     "- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\n- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\n"
     "- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\n- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\\n\n"
     "- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\\n\\o\n- a\\b\\c\\d\\e\\f\\g\\h\\i\\j\\k\\l\\m\\n\\o\\p\n"},
};

TEST(RegistryScript, GoodScripts_GiveTheirKeysInOrder)
{
    for (const GoodRow& row : kGoodRows) {
        const auto read = ReadRegistryScript(row.script, u"M'%x");
        const auto* const script = std::get_if<RegistryScript>(&read);
        ASSERT_NE(script, nullptr) << row.script << ": " << std::get<ScriptError>(read).reason;
        EXPECT_EQ(Show(*script), row.keys) << row.script;
    }
}

struct BadRow {
    std::string_view script;
    std::size_t line;
    std::string_view reason;
};

constexpr std::string_view kNoEnd = "a text without its end";
constexpr std::string_view kBadText = "a character that a text must not hold, or a text without its end";
constexpr std::string_view kBadWord = "a character that no word begins with";
constexpr std::string_view kBadName = "a name is empty, too long or has \\ or %";
constexpr std::string_view kNoName = "a name is missing";
constexpr std::string_view kNoText = "a text in quotes is missing";
constexpr std::string_view kReplacement = "the only replacement is %MODULE%";
constexpr std::string_view kTooDeep = "keys too deep inside each other";

const BadRow kBadRows[] = {
    {"", 1, "a script begins with HKCR"},
    {"hkcr {}", 1, "a script begins with HKCR"},
    {"HKLM {}", 1, "a script begins with HKCR"},
    {"'HKCR' {}", 1, "a script begins with HKCR"},
    {"HKCR", 1, "HKCR needs its keys in braces"},
    {"HKCR a", 1, "HKCR needs its keys in braces"},
    {"HKCR {", 1, kNoName},
    {"HKCR { a {", 1, kNoName},
    {"HKCR { a { }", 1, kNoName},
    {"HKCR {}}", 1, "nothing may follow the script"},
    {"HKCR {} HKCR {}", 1, "nothing may follow the script"},
    {"HKCR {\n a =\n}", 3, kNoText},
    {"HKCR { a = b }", 1, kNoText},
    {"HKCR { = 'x' }", 1, kNoName},
    {"HKCR { { } }", 1, kNoName},
    {"HKCR { NoRemove }", 1, kNoName},
    {"HKCR { NoRemove = 'x' }", 1, kNoName},
    {"HKCR { '' }", 1, kBadName},
    {"HKCR { 'a\\b' }", 1, kBadName},
    {"HKCR { '%MODULE%' }", 1, kBadName},
    {"HKCR { a { val '' = 'x' } }", 1, kBadName},
    {"HKCR { val a = 'x' }", 1, "a value outside of a key"},
    {"HKCR { a { val } }", 1, kNoName},
    {"HKCR { a { val b } }", 1, "a value needs = and its text"},
    {"HKCR { a { val b = 'x' { } } }", 1, kNoName},
    {"HKCR { a = '%module%' }", 1, kReplacement},
    {"HKCR { a = '100%' }", 1, kReplacement},
    {"HKCR { a = '%MODULE' }", 1, kReplacement},
    {"HKCR { a { NoRemove b } }", 1, "NoRemove below a key that is removed"},
    {"HKCR { a = 'x }", 1, kNoEnd},
    {"HKCR {\n a = 'x''", 2, kNoEnd},
    {"HKCR { a = 'x\ny' }", 1, kBadText},
    {"HKCR { a = 'x\ty' }", 1, kBadText},
    {"HKCR { a = '\xC3\xA9' }", 1, kBadText},
    {std::string_view("HKCR { a = '\0' }", 16), 1, kBadText},
    {std::string_view("HKCR { \0 }", 10), 1, kBadWord},
    {"HKCR\n{\n\n a; }", 4, kBadWord},
    {"HKCR { \"a\" }", 1, kBadWord},
    {"\xEF\xBB\xBFHKCR {}", 1, kBadWord},
    {"HKCR{a{b{c{d{e{f{g{h{i{j{k{l{m{n{o{p{q}}}}}}}}}}}}}}}}}", 1, kTooDeep},
};

TEST(RegistryScript, BadScripts_AreRefusedWithLineAndReason)
{
    for (const BadRow& row : kBadRows) {
        const auto read = ReadRegistryScript(row.script, u"M");
        const auto* const error = std::get_if<ScriptError>(&read);
        ASSERT_NE(error, nullptr) << row.script;
        EXPECT_EQ(error->line, row.line) << row.script;
        EXPECT_EQ(error->reason, row.reason) << row.script;
    }
}

TEST(RegistryScript, LongNames_AreRefusedBeyondTheRegistrysLimit)
{
    const auto scriptOf = [](std::size_t length) { return "HKCR { " + std::string(length, 'a') + " }"; };
    EXPECT_TRUE(std::holds_alternative<RegistryScript>(ReadRegistryScript(scriptOf(255), {})));
    EXPECT_TRUE(std::holds_alternative<ScriptError>(ReadRegistryScript(scriptOf(256), {})));
}

TEST(RegistryScript, EveryPrefixOfAGoodScript_IsRefused)
{
    const std::string_view whole = RegistryScriptText(104);
    const std::size_t last = whole.find_last_of('}');
    ASSERT_NE(last, std::string_view::npos);
    for (std::size_t length = 0; length <= last; ++length) {
        EXPECT_TRUE(std::holds_alternative<ScriptError>(ReadRegistryScript(whole.substr(0, length), u"M"))) << length;
    }
}

struct ClassRow {
    unsigned script;
    std::string name;
    std::string description;
    std::string clsid;
};

const ClassRow kClasses[] = {
    {101, "TaskInfo", "TaskInfo Class", "{2D417134-0D48-4856-B6F5-04E63171E24C}"},
    {102, "PolicyTask", "PolicyTask Class", "{04D18721-749F-4140-AEB0-CAC099CA4741}"},
    {103, "PolicyProduct", "PolicyProduct Class", "{1161A96C-CBA5-4CA7-BB39-BC9280348E73}"},
    {104, "PolicyFile", "PolicyFile Class", "{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}"},
};

TEST(RegistryScript, ScriptOfEachClass_HasExactlyItsKeysAndValues)
{
    for (const ClassRow& row : kClasses) {
        const auto read = ReadRegistryScript(RegistryScriptText(row.script), u"/lib/m.so");
        ASSERT_TRUE(std::holds_alternative<RegistryScript>(read)) << row.name;
        const std::string progId = "ZuPolicyManager." + row.name;
        const std::string key = "CLSID\\" + row.clsid;
        std::string expected = "-*" + progId + ".1 [=" + row.description + "]\n";
        expected += "- " + progId + ".1\\CLSID [=" + row.clsid + "]\n";
        expected += "-*" + progId + " [=" + row.description + "]\n";
        expected += "- " + progId + "\\CLSID [=" + row.clsid + "]\n";
        expected += "- " + progId + "\\CurVer [=" + progId + ".1]\n";
        expected += "N CLSID\n";
        expected += "F*" + key + " [=" + row.description + "]\n";
        expected += "- " + key + "\\ProgID [=" + progId + ".1]\n";
        expected += "- " + key + "\\VersionIndependentProgID [=" + progId + "]\n";
        expected += "F " + key + "\\Programmable\n";
        expected += "- " + key + "\\InprocServer32 [=/lib/m.so] [ThreadingModel=Free]\n";
        expected += "- " + key + "\\TypeLib [={7DB1286A-CBEF-4823-96AA-27093A546741}]\n";
        EXPECT_EQ(Show(std::get<RegistryScript>(read)), expected);
    }
}

TEST(RegistryScript, ScriptOfEachRowOfTheObjectMap_NamesTheClassOfTheRow)
{
    const auto sixteenBit = [](std::basic_string_view<OLECHAR> text) {
        return std::u16string(text.begin(), text.end());
    };
    for (const ObjectMapRow& row : kModuleObjects) {
        const auto read = ReadRegistryScript(RegistryScriptText(row.script), u"/lib/m.so");
        ASSERT_TRUE(std::holds_alternative<RegistryScript>(read)) << row.script;
        const auto& keys = std::get<RegistryScript>(read);
        ASSERT_GT(keys.size(), 1U) << row.script;
        EXPECT_EQ(keys[0].path, sixteenBit(row.progId)) << row.script;
        OLECHAR clsid[39]{};
        ASSERT_EQ(StringFromGUID2(row.clsid, clsid, std::size(clsid)), 39) << row.script;
        ASSERT_EQ(keys[1].values.size(), 1U) << row.script;
        EXPECT_EQ(keys[1].values[0].text, sixteenBit(clsid)) << row.script;
    }
}

TEST(RegistryScript, UnknownNumber_HasNoText)
{
    EXPECT_TRUE(RegistryScriptText(100).empty());
    EXPECT_TRUE(RegistryScriptText(105).empty());
}

}  // namespace
}  // namespace zupm::test
