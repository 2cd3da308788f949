/// Rules from a file.
#pragma once

#include <string>

#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::rules {

/// Reads the rules at a UTF-8 path. Throws tool::ProblemFailure (FileError), for rules that are wrong with line and
/// column.
[[nodiscard]] RuleSet ReadRules(const std::string& path);

}  // namespace zupm::rules
