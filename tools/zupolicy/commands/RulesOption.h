/// The option --rules of `check` and `report`.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/rules/RuleSet.h"

namespace CLI {
class App;
}

namespace zupm::tool {

void AddRules(CLI::App& line, std::optional<std::string>& rules);

/// The rules of the option; nothing without it. Throws Failure, also (Usage) when they and one of the policy files are
/// both to come from standard input.
[[nodiscard]] std::optional<rules::RuleSet> RulesFor(const std::optional<std::string>& rules,
                                                     const std::vector<std::string>& files);

}  // namespace zupm::tool
