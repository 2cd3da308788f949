#include "tools/zupolicy/rules/Check.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::rules {
namespace {

/// The number that a text is. One that 64 bits cannot hold is the nearest that they can.
std::optional<std::int64_t> NumberIn(std::string_view text)
{
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + (hasPlus ? 1 : 0), end, number);
    if (rest != end || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        return text[0] == '-' ? INT64_MIN : INT64_MAX;
    }
    return number;
}

std::int64_t CharactersIn(std::string_view text)
{
    return std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u; });
}

std::string Count(std::int64_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// `text` with `***` for each occurrence of a secret.
std::string Without(std::string text, std::string_view secret)
{
    for (std::size_t at = 0; !secret.empty() && (at = text.find(secret, at)) != text.npos; at += tool::kHidden.size()) {
        text.replace(at, secret.size(), tool::kHidden);
    }
    return text;
}

/// Checks rules against a value and what is in it. Without a list of violations it only finds out whether there is one.
///
/// The depth of the calls is bounded by the levels of the document and by the reader of the rules.
class Checker {
public:
    Checker(const tool::Redaction& redaction, std::vector<Violation>* violations)
        : m_redaction(redaction), m_violations(violations)
    {
    }

    /// Whether the value at the path fits.
    bool Fits(const Rule& rule, const Node& node, Severity inherited);
    Path& Where() { return m_path; }

private:
    struct Failed {
        const Rule& rule;
        Severity severity;
        tool::Offset at;
        std::string_view value = {};  ///< may be a secret
    };

    bool Text(const Rule& rule, const Node& node, const Failed& failed);
    bool Number(const Rule& rule, const Node& node, const Failed& failed);
    bool Object(const Rule& rule, const Node& node, const Failed& failed);
    bool Required(const Rule& rule, const Node& node, const Failed& failed);
    bool Members(const Rule& rule, const Node& node, Severity severity);
    bool Member(const Rule& rule, const Node::Member& member, Severity severity);
    bool Name(const Rule& rule, const Node::Member& member, Severity severity);
    bool Together(const Rule& rule, const Node& node, const Failed& failed);
    [[nodiscard]] std::size_t FittingOf(const std::vector<const Rule*>& rules, const Node& node) const;
    [[nodiscard]] bool FitsQuietly(const Rule& rule, const Node& node) const;

    bool Fail(const Failed& failed, std::string message);
    bool MissingMember(const Failed& failed, const std::string& name, const std::string& message);
    [[nodiscard]] bool IsHidden() const;
    /// A value of the file or of the rules, as a message shows it.
    [[nodiscard]] std::string Shown(std::string_view value) const
    {
        return m_isName || !IsHidden() ? tool::Quoted(value) : tool::Quoted(tool::kHidden);
    }
    [[nodiscard]] std::string ShownValues(const std::vector<std::string>& values) const;

    const tool::Redaction& m_redaction;
    std::vector<Violation>* m_violations;
    Path m_path;
    bool m_isName = false;  ///< the text that is checked is a name
};

bool Checker::IsHidden() const
{
    const ValueName value = ValueNameOf(m_path);
    if (value.name.empty() && value.section.empty()) {
        return false;
    }
    return value.section.empty() && value.isTask && m_path.size() == 4
               ? m_redaction.HidesField(value.name)
               : m_redaction.HidesSetting(value.section, value.name, value.isTask);
}

bool Checker::Fail(const Failed& failed, std::string message)
{
    if (m_violations != nullptr) {
        if (failed.rule.message) {
            message = IsHidden() ? Without(*failed.rule.message, failed.value) : *failed.rule.message;
        } else if (m_isName) {
            message = "its name " + message;
        }
        m_violations->push_back({failed.severity, failed.at, Describe(m_path), PointerOf(m_path), std::move(message)});
    }
    return false;
}

bool Checker::MissingMember(const Failed& failed, const std::string& name, const std::string& message)
{
    m_path.push_back(name);
    Fail(failed, message);
    m_path.pop_back();
    return false;
}

std::string Checker::ShownValues(const std::vector<std::string>& values) const
{
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "" : ", ") + Shown(value);
    }
    return (values.size() == 1 ? "must be " : "must be one of ") + text;
}

bool Checker::Number(const Rule& rule, const Node& node, const Failed& failed)
{
    if (!rule.minimum && !rule.maximum) {
        return true;
    }
    const std::string is = "is " + Shown(node.text) + ", must be ";
    const std::optional<std::int64_t> number = NumberIn(node.text);
    if (!number) {
        return Fail(failed, is + "a whole number");
    }
    if (rule.minimum && *number < *rule.minimum) {
        return Fail(failed, is + "at least " + std::to_string(*rule.minimum));
    }
    if (rule.maximum && *number > *rule.maximum) {
        return Fail(failed, is + "at most " + std::to_string(*rule.maximum));
    }
    return true;
}

bool Checker::Text(const Rule& rule, const Node& node, const Failed& failed)
{
    if (!rule.takesTexts) {
        return Fail(failed, "must be an object, not a text");
    }
    bool fits = Number(rule, node, failed);
    if (rule.values && std::ranges::find(*rule.values, node.text) == rule.values->end()) {
        fits = Fail(failed, "is " + Shown(node.text) + ", " + ShownValues(*rule.values));
    }
    if (rule.pattern && !rule.pattern->pattern.IsIn(node.text)) {
        fits = Fail(failed, "is " + Shown(node.text) + ", must match " + Shown(rule.pattern->text));
    }
    if (rule.minLength && CharactersIn(node.text) < *rule.minLength) {
        fits = Fail(failed, "is " + Shown(node.text) + ", must have at least " +
                                Count(*rule.minLength, "character", "characters"));
    }
    if (rule.maxLength && CharactersIn(node.text) > *rule.maxLength) {
        fits = Fail(failed, "is " + Shown(node.text) + ", must have at most " +
                                Count(*rule.maxLength, "character", "characters"));
    }
    return fits;
}

bool Checker::Required(const Rule& rule, const Node& node, const Failed& failed)
{
    bool fits = true;
    for (const std::string& name : rule.required) {
        if (node.Find(name) == nullptr) {
            fits = MissingMember(failed, name, "is missing");
        }
    }
    for (const auto& [name, others] : rule.dependentRequired) {
        for (const std::string& other : others) {
            if (node.Find(name) != nullptr && node.Find(other) == nullptr) {
                fits = MissingMember(failed, other, "is missing, and " + tool::Quoted(name) + " needs it");
            }
        }
    }
    return fits;
}

bool Checker::Object(const Rule& rule, const Node& node, const Failed& failed)
{
    if (!rule.takesObjects) {
        return Fail(failed, "must be a text, not an object");
    }
    if (rule.values) {
        return Fail(failed, "must be a text, not an object");
    }
    bool fits = Required(rule, node, failed);
    const auto count = static_cast<std::int64_t>(node.members.size());
    const std::string has = "has " + Count(count, "entry", "entries");
    if (rule.minProperties && count < *rule.minProperties) {
        fits = Fail(failed, has + ", must have at least " + std::to_string(*rule.minProperties));
    }
    if (rule.maxProperties && count > *rule.maxProperties) {
        fits = Fail(failed, has + ", must have at most " + std::to_string(*rule.maxProperties));
    }
    return Members(rule, node, failed.severity) && fits;
}

bool Checker::Members(const Rule& rule, const Node& node, Severity severity)
{
    if (rule.properties.empty() && rule.patternProperties.empty() && rule.additionalProperties == nullptr &&
        rule.propertyNames == nullptr) {
        return true;
    }
    bool fits = true;
    for (const Node::Member& member : node.members) {
        m_path.push_back(member.name);
        fits = Member(rule, member, severity) && fits;
        m_path.pop_back();
    }
    return fits;
}

bool Checker::Member(const Rule& rule, const Node::Member& member, Severity severity)
{
    bool fits = rule.propertyNames == nullptr || Name(*rule.propertyNames, member, severity);
    bool isKnown = false;
    if (const auto found = rule.properties.find(member.name); found != rule.properties.end()) {
        isKnown = true;
        fits = Fits(*found->second, member.value, severity) && fits;
    }
    for (const auto& [name, next] : rule.patternProperties) {
        if (name.pattern.IsIn(member.name)) {
            isKnown = true;
            fits = Fits(*next, member.value, severity) && fits;
        }
    }
    if (isKnown || rule.additionalProperties == nullptr) {
        return fits;
    }
    if (rule.additionalProperties->isNever) {
        // The word has no room for a message of its own.
        return Fail({rule, severity, member.value.at, member.value.text}, "is not allowed");
    }
    return Fits(*rule.additionalProperties, member.value, severity) && fits;
}

bool Checker::Name(const Rule& rule, const Node::Member& member, Severity severity)
{
    Node name;
    name.isText = true;
    name.text = member.name;
    name.at = member.value.at;
    m_isName = true;
    const bool fits = Fits(rule, name, severity);
    m_isName = false;
    return fits;
}

bool Checker::FitsQuietly(const Rule& rule, const Node& node) const
{
    return Checker(m_redaction, nullptr).Fits(rule, node, Severity::Error);
}

std::size_t Checker::FittingOf(const std::vector<const Rule*>& rules, const Node& node) const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(rules, [&](const Rule* rule) { return FitsQuietly(*rule, node); }));
}

/// The words that combine rules.
bool Checker::Together(const Rule& rule, const Node& node, const Failed& failed)
{
    bool fits = rule.reference == nullptr || Fits(*rule.reference, node, failed.severity);
    for (const Rule* const each : rule.allOf) {
        fits = Fits(*each, node, failed.severity) && fits;
    }
    if (!rule.anyOf.empty() && FittingOf(rule.anyOf, node) == 0) {
        fits = Fail(failed, "fits none of the alternatives");
    }
    if (!rule.oneOf.empty()) {
        if (const std::size_t fitting = FittingOf(rule.oneOf, node); fitting != 1) {
            fits = Fail(failed, "fits " + (fitting == 0 ? "none" : std::to_string(fitting)) +
                                    " of the alternatives, must fit one");
        }
    }
    if (rule.isNot != nullptr && FitsQuietly(*rule.isNot, node)) {
        fits = Fail(failed, "is what it must not be");
    }
    if (rule.condition != nullptr) {
        const Rule* const next = FitsQuietly(*rule.condition, node) ? rule.then : rule.otherwise;
        fits = (next == nullptr || Fits(*next, node, failed.severity)) && fits;
    }
    return fits;
}

bool Checker::Fits(const Rule& rule, const Node& node, Severity inherited)
{
    const Severity severity = rule.severity.value_or(inherited);
    const Failed failed{rule, severity, node.at, node.text};
    if (rule.isNever) {
        return Fail(failed, "is not allowed");
    }
    const bool fits = node.isText ? Text(rule, node, failed) : Object(rule, node, failed);
    return Together(rule, node, failed) && fits;
}

}  // namespace

std::vector<Violation> CheckRules(const RuleSet& rules, const Node& document, const tool::Redaction& redaction)
{
    std::vector<Violation> violations;
    static_cast<void>(Checker(redaction, &violations).Fits(rules.Root(), document, Severity::Error));
    std::ranges::stable_sort(violations, {}, &Violation::at);
    return violations;
}

}  // namespace zupm::rules
