#include "tools/zupolicy/rules/RuleSet.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/rules/FixedNames.h"
#include "tools/zupolicy/rules/RuleWords.h"

namespace zupm::rules {

using model::JsonComplaint;
using model::JsonValue;

namespace {

/// Two levels for each step from the file to a value, and room for alternatives in alternatives.
constexpr std::size_t kMostLevels = 64;
// A few references are enough to write down more work than can ever be done.
constexpr std::size_t kMostRulesInARow = 200;
constexpr std::uint64_t kMostRulesForOneValue = 10'000;

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
    for (std::size_t i = 0; !PlainWordAt(i).empty(); ++i) {
        nearest.Offer(PlainWordAt(i));
    }
    offerEach(kRuleWords);
    offerEach(kListWords);
    for (const std::string_view word : kOtherWords) {
        nearest.Offer(word);
    }
    const std::string suggestion = nearest.Suggestion();
    throw JsonComplaint{member.at,
                        "rules have no word " + InQuotes(member.name) + (suggestion.empty() ? "" : "; " + suggestion)};
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
    if (ReadPlainWord(member, rule)) {
        return;
    }
    if (const RuleWord* const one = FindWord(kRuleWords, member.name)) {
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
        rule.names.push_back({member.name, member.at});
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
    const JsonValue root = model::ReadJson(text, {.mostLevels = kMostLevels});
    RuleReader(root, *this).ReadAll();
    RequireKnownNames(Root());
}

}  // namespace zupm::rules
