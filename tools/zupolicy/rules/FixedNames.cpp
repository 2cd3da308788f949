#include "tools/zupolicy/rules/FixedNames.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/rules/RuleWords.h"

namespace zupm::rules {
namespace {

/// An object of the form that rules are about; see DocumentOf.
enum class Level : std::uint8_t {
    File,
    Tasks,    ///< by software ID
    Product,  ///< tasks of one product, by task ID
    Task,
    Other,  ///< nothing in it has a fixed name
};

struct FixedMember {
    std::string_view name;
    Level level;
};

constexpr FixedMember kOfFile[] = {
    {"policyVersion", Level::Other}, {"taskVersion", Level::Other}, {"assignmentList", Level::Other},
    {"policies", Level::Other},      {"tasks", Level::Tasks},
};
constexpr FixedMember kOfTask[] = {
    {"displayName", Level::Other}, {"type", Level::Other},    {"platforms", Level::Other}, {"priority", Level::Other},
    {"creator", Level::Other},     {"version", Level::Other}, {"sections", Level::Other},
};

/// The members of an object; none when they may have any name.
std::span<const FixedMember> MembersOf(Level level)
{
    switch (level) {
        case Level::File:
            return kOfFile;
        case Level::Task:
            return kOfTask;
        default:
            return {};
    }
}

/// What a member is whose name may be any.
Level InsideOf(Level level)
{
    return level == Level::Tasks ? Level::Product : level == Level::Product ? Level::Task : Level::Other;
}

[[noreturn]] void RefuseName(const MemberName& wrong, Level level)
{
    tool::NearestName nearest(wrong.name);
    std::string list;
    for (const FixedMember& member : MembersOf(level)) {
        nearest.Offer(member.name);
        list += (list.empty() ? "" : ", ") + std::string(member.name);
    }
    const std::string suggestion = nearest.Suggestion();
    throw model::JsonComplaint{wrong.at, std::string(level == Level::File ? "a file" : "a task") + " has no " +
                                             InQuotes(wrong.name) + " here; " +
                                             (suggestion.empty() ? "it has " + list : suggestion)};
}

/// Follows the rules into the file. Each is looked at once for each kind of object that it is about.
///
/// The depth of the calls is bounded by the rules in a row that a reader of rules takes, for each of four levels.
class NameCheck {
public:
    void Check(const Rule* rule, Level level)
    {
        if (rule == nullptr || level == Level::Other || !m_seen.emplace(rule, level).second) {
            return;
        }
        CheckBeside(*rule, level);
        const std::span<const FixedMember> members = MembersOf(level);
        if (members.empty()) {
            CheckAnyMember(*rule, InsideOf(level));
            return;
        }
        for (const MemberName& each : rule->names) {
            if (std::ranges::find(members, each.name, &FixedMember::name) == members.end()) {
                RefuseName(each, level);
            }
        }
        for (const FixedMember& member : members) {
            CheckMember(*rule, member);
        }
    }

private:
    /// The rules that are about the same object.
    void CheckBeside(const Rule& rule, Level level)
    {
        for (const Rule* const next : {rule.reference, rule.isNot, rule.condition, rule.then, rule.otherwise}) {
            Check(next, level);
        }
        for (const auto* const list : {&rule.allOf, &rule.anyOf, &rule.oneOf}) {
            for (const Rule* const next : *list) {
                Check(next, level);
            }
        }
    }

    void CheckAnyMember(const Rule& rule, Level inside)
    {
        for (const auto& [name, next] : rule.properties) {
            Check(next, inside);
        }
        for (const auto& [name, next] : rule.patternProperties) {
            Check(next, inside);
        }
        Check(rule.additionalProperties, inside);
    }

    void CheckMember(const Rule& rule, const FixedMember& member)
    {
        const auto named = rule.properties.find(member.name);
        bool isNamed = named != rule.properties.end();
        Check(isNamed ? named->second : nullptr, member.level);
        for (const auto& [name, next] : rule.patternProperties) {
            if (name.pattern.IsIn(member.name)) {
                isNamed = true;
                Check(next, member.level);
            }
        }
        Check(isNamed ? nullptr : rule.additionalProperties, member.level);
    }

    std::set<std::pair<const Rule*, Level>> m_seen;
};

}  // namespace

void RequireKnownNames(const Rule& root)
{
    NameCheck().Check(&root, Level::File);
}

}  // namespace zupm::rules
