#include "tools/zupolicy/rules/RuleSet.h"

#include <algorithm>
#include <array>
#include <set>
#include <unordered_map>

#include "tools/zupolicy/report/NearestName.h"

namespace zupm::rules {

using model::JsonComplaint;
using model::JsonValue;

namespace {

/// Two levels for each step from the file to a value, and room for alternatives in alternatives.
constexpr std::size_t kMostLevels = 64;
// A few references are enough to write down more work than can ever be done.
constexpr std::size_t kMostRulesInARow = 200;
constexpr std::uint64_t kMostRulesForOneValue = 10'000;

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

std::vector<std::string> NamesOf(const JsonValue& value, std::string_view word)
{
    Require(value, JsonValue::Type::Array, word, "an array of texts");
    std::vector<std::string> names;
    for (const JsonValue& item : value.items) {
        names.push_back(TextOf(item, word));
    }
    return names;
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
        rule.dependentRequired.emplace_back(member.name, NamesOf(member.value, "dependentRequired"));
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
    {"required", [](const JsonValue& value, Rule& rule) { rule.required = NamesOf(value, "required"); }},
    {"minProperties", [](const JsonValue& value, Rule& rule) { rule.minProperties = CountOf(value, "minProperties"); }},
    {"maxProperties", [](const JsonValue& value, Rule& rule) { rule.maxProperties = CountOf(value, "maxProperties"); }},
    {"dependentRequired", ReadDependent},
    {"x-message", [](const JsonValue& value, Rule& rule) { rule.message = TextOf(value, "x-message"); }},
    {"x-severity", ReadSeverity},
};

struct RuleWord {
    std::string_view name;
    const Rule* Rule::*rule;
};
constexpr RuleWord kRuleWords[] = {
    {"additionalProperties", &Rule::additionalProperties},
    {"propertyNames", &Rule::propertyNames},
    {"not", &Rule::isNot},
    {"if", &Rule::condition},
    {"then", &Rule::then},
    {"else", &Rule::otherwise},
};

struct ListWord {
    std::string_view name;
    std::vector<const Rule*> Rule::*rules;
};
constexpr ListWord kListWords[] = {{"allOf", &Rule::allOf}, {"anyOf", &Rule::anyOf}, {"oneOf", &Rule::oneOf}};

constexpr std::string_view kOtherWords[] = {"properties", "patternProperties", "$defs", "definitions", "$ref"};

template <class Table>
auto FindWord(const Table& table, std::string_view name)
{
    const auto* const found = std::ranges::find_if(table, [&](const auto& word) { return word.name == name; });
    return found == std::end(table) ? nullptr : found;
}

[[noreturn]] void RefuseWord(const JsonValue::Member& member)
{
    tool::NearestName nearest(member.name);
    const auto offerEach = [&](const auto& table) {
        for (const auto& word : table) {
            nearest.Offer(word.name);
        }
    };
    offerEach(kPlainWords);
    offerEach(kRuleWords);
    offerEach(kListWords);
    for (const std::string_view word : kOtherWords) {
        nearest.Offer(word);
    }
    throw JsonComplaint{member.at, "rules have no word " + InQuotes(member.name) + nearest.Question()};
}

/// A name of a JSON pointer without its escapes.
std::string Unescaped(std::string_view name)
{
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool isEscape = name[i] == '~' && i + 1 < name.size() && (name[i + 1] == '0' || name[i + 1] == '1');
        text += isEscape ? (name[++i] == '0' ? '~' : '/') : name[i];
    }
    return text;
}

/// The value that a JSON pointer leads to, or null.
const JsonValue* Follow(const JsonValue& root, std::string_view pointer)
{
    const JsonValue* value = &root;
    while (!pointer.empty()) {
        pointer.remove_prefix(1);
        const std::size_t end = std::min(pointer.find('/'), pointer.size());
        const std::string name = Unescaped(pointer.substr(0, end));
        pointer.remove_prefix(end);
        const auto found =
            std::ranges::find_if(value->members, [&](const JsonValue::Member& member) { return member.name == name; });
        const bool isNumber = !name.empty() && name.size() < 9 && name.find_first_not_of("0123456789") == name.npos;
        if (found != value->members.end()) {
            value = &found->value;
        } else if (isNumber && std::stoul(name) < value->items.size()) {
            value = &value->items[std::stoul(name)];
        } else {
            return nullptr;
        }
    }
    return value;
}

}  // namespace

/// Makes rules of JSON values; references are resolved when all rules are made.
class RuleReader {
public:
    RuleReader(const JsonValue& root, RuleSet& set) : m_root(root), m_set(set) {}

    void ReadAll()
    {
        static_cast<void>(Read(m_root));
        for (const auto& [rule, value] : m_references) {
            rule->reference = RuleAt(*value);
        }
        for (const Rule& rule : m_set.m_rules) {
            static_cast<void>(CostOf(rule));
        }
    }

private:
    const Rule* Read(const JsonValue& value);
    void ReadWord(const JsonValue::Member& member, Rule& rule);
    void ReadProperties(const JsonValue& value, Rule& rule);
    void ReadPatternProperties(const JsonValue& value, Rule& rule);
    void ReadDefinitions(const JsonValue::Member& member);
    const Rule* RuleAt(const JsonValue& reference) const;
    std::uint64_t CostOf(const Rule& rule);

    const JsonValue& m_root;
    RuleSet& m_set;
    std::unordered_map<const JsonValue*, const Rule*> m_byValue;
    std::vector<std::pair<Rule*, const JsonValue*>> m_references;
    std::set<const Rule*> m_open;                            ///< on the way to the rule that is looked at
    std::unordered_map<const Rule*, std::uint64_t> m_costs;  ///< of the rules that were looked at
};

const Rule* RuleReader::Read(const JsonValue& value)
{
    Rule& rule = m_set.m_rules.emplace_back();
    rule.at = value.at;
    m_byValue.emplace(&value, &rule);
    if (value.type == JsonValue::Type::Boolean) {
        rule.isNever = value.integer == 0;
        return &rule;
    }
    if (value.type != JsonValue::Type::Object) {
        throw JsonComplaint{value.at, "a rule must be an object, true or false"};
    }
    for (const JsonValue::Member& member : value.members) {
        ReadWord(member, rule);
    }
    return &rule;
}

void RuleReader::ReadWord(const JsonValue::Member& member, Rule& rule)
{
    if (const PlainWord* const word = FindWord(kPlainWords, member.name)) {
        word->read(member.value, rule);
    } else if (const RuleWord* const one = FindWord(kRuleWords, member.name)) {
        rule.*(one->rule) = Read(member.value);
    } else if (const ListWord* const list = FindWord(kListWords, member.name)) {
        Require(member.value, JsonValue::Type::Array, member.name, "an array of rules");
        for (const JsonValue& item : member.value.items) {
            (rule.*(list->rules)).push_back(Read(item));
        }
    } else if (member.name == "properties") {
        ReadProperties(member.value, rule);
    } else if (member.name == "patternProperties") {
        ReadPatternProperties(member.value, rule);
    } else if (member.name == "$defs" || member.name == "definitions") {
        ReadDefinitions(member);
    } else if (member.name == "$ref") {
        static_cast<void>(TextOf(member.value, "$ref"));
        m_references.emplace_back(&rule, &member.value);
    } else {
        RefuseWord(member);
    }
}

void RuleReader::ReadProperties(const JsonValue& value, Rule& rule)
{
    Require(value, JsonValue::Type::Object, "properties", "an object");
    for (const JsonValue::Member& member : value.members) {
        rule.properties.emplace(member.name, Read(member.value));
    }
}

void RuleReader::ReadPatternProperties(const JsonValue& value, Rule& rule)
{
    Require(value, JsonValue::Type::Object, "patternProperties", "an object");
    for (const JsonValue::Member& member : value.members) {
        rule.patternProperties.emplace_back(PatternOf(member.name, member.at), Read(member.value));
    }
}

void RuleReader::ReadDefinitions(const JsonValue::Member& member)
{
    Require(member.value, JsonValue::Type::Object, member.name, "an object");
    for (const JsonValue::Member& definition : member.value.members) {
        static_cast<void>(Read(definition.value));
    }
}

const Rule* RuleReader::RuleAt(const JsonValue& reference) const
{
    const std::string& text = reference.text;
    if (!text.starts_with('#') || (text.size() > 1 && text[1] != '/')) {
        throw JsonComplaint{reference.at,
                            "\"$ref\" must lead to a rule of this text, such as \"#/$defs/name\"; no "
                            "other file and nothing of the network is read"};
    }
    const JsonValue* const value = Follow(m_root, std::string_view(text).substr(1));
    const auto found = m_byValue.find(value);
    if (found == m_byValue.end()) {
        throw JsonComplaint{reference.at, "there is no rule " + InQuotes(text)};
    }
    return found->second;
}

/// How many rules are checked for one value of the file. Refuses a rule that is met again before a step into the file
/// is made: checking it would never end.
std::uint64_t RuleReader::CostOf(const Rule& rule)
{
    if (const auto known = m_costs.find(&rule); known != m_costs.end()) {
        return known->second;
    }
    if (!m_open.insert(&rule).second) {
        throw JsonComplaint{rule.at, "this rule leads to itself"};
    }
    std::uint64_t cost = 1;
    const auto add = [&](const Rule* next) {
        cost += next == nullptr ? 0 : CostOf(*next);
        if (cost > kMostRulesForOneValue || m_open.size() > kMostRulesInARow) {
            throw JsonComplaint{rule.at, "this rule leads to too many others"};
        }
    };
    for (const Rule* const next : {rule.reference, rule.isNot, rule.condition, rule.then, rule.otherwise}) {
        add(next);
    }
    for (const auto* const list : {&rule.allOf, &rule.anyOf, &rule.oneOf}) {
        std::ranges::for_each(*list, add);
    }
    m_open.erase(&rule);
    m_costs.emplace(&rule, cost);
    return cost;
}

RuleSet::RuleSet(std::string_view text)
{
    const JsonValue root = model::ReadJson(text, kMostLevels);
    RuleReader(root, *this).ReadAll();
}

}  // namespace zupm::rules
