#include "tools/zupolicy/rules/RuleWords.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace zupm::rules {

using model::JsonComplaint;
using model::JsonValue;

std::string InQuotes(std::string_view name)
{
    return "\"" + std::string(name) + "\"";
}

void Require(const JsonValue& value, JsonValue::Type type, std::string_view word, const char* what)
{
    if (value.type != type) {
        throw JsonComplaint{value.at, InQuotes(word) + " must be " + what};
    }
}

const std::string& TextOf(const JsonValue& value, std::string_view word)
{
    Require(value, JsonValue::Type::Text, word, "a text");
    return value.text;
}

NamedPattern PatternOf(const std::string& text, std::size_t at)
{
    try {
        return {text, Pattern(text)};
    } catch (const PatternComplaint& complaint) {
        throw JsonComplaint{at, "the expression " + InQuotes(text) + " is not valid at character " +
                                    std::to_string(complaint.at + 1) + ": " + complaint.message};
    }
}

namespace {

std::int64_t IntegerOf(const JsonValue& value, std::string_view word)
{
    Require(value, JsonValue::Type::Integer, word, "a whole number");
    return value.integer;
}

std::int64_t CountOf(const JsonValue& value, std::string_view word)
{
    if (IntegerOf(value, word) < 0) {
        throw JsonComplaint{value.at, InQuotes(word) + " must not be negative"};
    }
    return value.integer;
}

/// A value that a setting can have.
std::string SettingOf(const JsonValue& value, std::string_view word)
{
    if (value.type == JsonValue::Type::Integer) {
        throw JsonComplaint{value.at,
                            InQuotes(word) + ": all values are texts; write \"" + std::to_string(value.integer) + "\""};
    }
    if (value.type != JsonValue::Type::Text) {
        throw JsonComplaint{value.at, InQuotes(word) + ": all values are texts"};
    }
    return value.text;
}

std::vector<std::string> NamesOf(const JsonValue& value, std::string_view word, Rule& rule)
{
    Require(value, JsonValue::Type::Array, word, "an array of texts");
    std::vector<std::string> names;
    for (const JsonValue& item : value.items) {
        names.push_back(TextOf(item, word));
        rule.names.push_back({item.text, item.at});
    }
    return names;
}

void AllowType(const JsonValue& value, Rule& rule)
{
    const std::string& type = TextOf(value, "type");
    if (type == "object") {
        rule.takesObjects = true;
    } else if (type == "string") {
        rule.takesTexts = true;
    } else {
        throw JsonComplaint{value.at, "there is no type " + InQuotes(type) +
                                          R"( in a policy file: only "object" and "string"; for a number use )"
                                          R"("x-minimum", "x-maximum" or "pattern")"};
    }
}

void ReadType(const JsonValue& value, Rule& rule)
{
    rule.takesObjects = rule.takesTexts = false;
    if (value.type != JsonValue::Type::Array) {
        AllowType(value, rule);
        return;
    }
    for (const JsonValue& item : value.items) {
        AllowType(item, rule);
    }
}

void ReadValues(const JsonValue& value, Rule& rule)
{
    Require(value, JsonValue::Type::Array, "enum", "an array of texts");
    rule.values.emplace();
    for (const JsonValue& item : value.items) {
        rule.values->push_back(SettingOf(item, "enum"));
    }
}

void ReadConstant(const JsonValue& value, Rule& rule)
{
    rule.values = {SettingOf(value, "const")};
}

void ReadPatternWord(const JsonValue& value, Rule& rule)
{
    rule.pattern = PatternOf(TextOf(value, "pattern"), value.at);
}

void ReadSeverity(const JsonValue& value, Rule& rule)
{
    const std::string& text = TextOf(value, "x-severity");
    if (text != "error" && text != "warning") {
        throw JsonComplaint{value.at, R"("x-severity" must be "error" or "warning")"};
    }
    rule.severity = text == "error" ? Severity::Error : Severity::Warning;
}

void ReadDependent(const JsonValue& value, Rule& rule)
{
    Require(value, JsonValue::Type::Object, "dependentRequired", "an object");
    for (const JsonValue::Member& member : value.members) {
        rule.names.push_back({member.name, member.at});
        rule.dependentRequired.emplace_back(member.name, NamesOf(member.value, "dependentRequired", rule));
    }
}

/// A word that has no rules in it.
struct PlainWord {
    std::string_view name;
    void (*read)(const JsonValue& value, Rule& rule);
};

void PassOver(const JsonValue& /*value*/, Rule& /*rule*/) {}

constexpr PlainWord kPlainWords[] = {
    {"$schema", PassOver},
    {"$comment", PassOver},
    {"title", PassOver},
    {"description", PassOver},
    {"default", PassOver},
    {"examples", PassOver},
    {"type", ReadType},
    {"const", ReadConstant},
    {"enum", ReadValues},
    {"pattern", ReadPatternWord},
    {"minLength", [](const JsonValue& value, Rule& rule) { rule.minLength = CountOf(value, "minLength"); }},
    {"maxLength", [](const JsonValue& value, Rule& rule) { rule.maxLength = CountOf(value, "maxLength"); }},
    {"x-minimum", [](const JsonValue& value, Rule& rule) { rule.minimum = IntegerOf(value, "x-minimum"); }},
    {"x-maximum", [](const JsonValue& value, Rule& rule) { rule.maximum = IntegerOf(value, "x-maximum"); }},
    {"required", [](const JsonValue& value, Rule& rule) { rule.required = NamesOf(value, "required", rule); }},
    {"minProperties", [](const JsonValue& value, Rule& rule) { rule.minProperties = CountOf(value, "minProperties"); }},
    {"maxProperties", [](const JsonValue& value, Rule& rule) { rule.maxProperties = CountOf(value, "maxProperties"); }},
    {"dependentRequired", ReadDependent},
    {"x-message", [](const JsonValue& value, Rule& rule) { rule.message = TextOf(value, "x-message"); }},
    {"x-severity", ReadSeverity},
};

}  // namespace

bool ReadPlainWord(const JsonValue::Member& member, Rule& rule)
{
    const auto* const word =
        std::ranges::find_if(kPlainWords, [&](const PlainWord& each) { return each.name == member.name; });
    if (word == std::end(kPlainWords)) {
        return false;
    }
    word->read(member.value, rule);
    return true;
}

std::string_view PlainWordAt(std::size_t number)
{
    return number < std::size(kPlainWords) ? kPlainWords[number].name : std::string_view();
}

}  // namespace zupm::rules
