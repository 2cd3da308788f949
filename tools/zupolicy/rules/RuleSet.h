/// Rules for policy files, as an administrator writes them: a JSON Schema.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/zupolicy/model/JsonText.h"
#include "tools/zupolicy/rules/Pattern.h"

namespace zupm::rules {

enum class Severity : std::uint8_t { Error, Warning };

/// An expression with its text.
struct NamedPattern {
    std::string text;
    Pattern pattern;
};

/// A name that a rule gives to a member, and the byte where it is written.
struct MemberName {
    std::string name;
    std::size_t at = 0;
};

/// One schema of the rules; what is missing in it does not restrict anything. Rules that it refers to belong to the
/// set.
struct Rule {
    std::size_t at = 0;  ///< the byte where it begins
    bool isNever = false;
    std::optional<Severity> severity;  ///< nothing: that of the rule around it
    std::optional<std::string> message;

    bool takesTexts = true;
    bool takesObjects = true;

    // Texts.
    std::optional<std::vector<std::string>> values;  ///< of `const` or `enum`
    std::optional<NamedPattern> pattern;
    std::optional<std::int64_t> minLength;
    std::optional<std::int64_t> maxLength;
    std::optional<std::int64_t> minimum;
    std::optional<std::int64_t> maximum;

    // Objects.
    std::vector<std::string> required;
    std::map<std::string, const Rule*, std::less<>> properties;
    std::vector<std::pair<NamedPattern, const Rule*>> patternProperties;
    const Rule* additionalProperties = nullptr;
    const Rule* propertyNames = nullptr;
    std::optional<std::int64_t> minProperties;
    std::optional<std::int64_t> maxProperties;
    std::vector<std::pair<std::string, std::vector<std::string>>> dependentRequired;
    std::vector<MemberName> names;  ///< of `properties`, `required` and `dependentRequired`

    // Both.
    const Rule* reference = nullptr;
    std::vector<const Rule*> allOf;
    std::vector<const Rule*> anyOf;
    std::vector<const Rule*> oneOf;
    const Rule* isNot = nullptr;
    const Rule* condition = nullptr;
    const Rule* then = nullptr;
    const Rule* otherwise = nullptr;
};

/// All rules of a file.
class RuleSet {
public:
    /// Refused are, besides what is not JSON, every word that is not known here and every name that no file can have,
    /// so that no mistyped rule is passed over; values of another type than the word takes; references that lead out of
    /// the text, nowhere or in a circle.
    /// Throws model::JsonComplaint.
    explicit RuleSet(std::string_view text);
    ~RuleSet() = default;
    RuleSet(const RuleSet&) = delete;
    RuleSet& operator=(const RuleSet&) = delete;
    RuleSet(RuleSet&&) noexcept = default;
    RuleSet& operator=(RuleSet&&) noexcept = default;

    [[nodiscard]] const Rule& Root() const { return m_rules.front(); }

private:
    friend class RuleReader;

    std::deque<Rule> m_rules;
};

}  // namespace zupm::rules
