/// Rules from a file.
#pragma once

#include <string>

#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::rules {

/// Reads the rules at a UTF-8 path; "-" is standard input. Throws tool::Failure (FileError), for rules that are wrong
/// with line and column. Call it on a thread with a Runtime.
[[nodiscard]] RuleSet ReadRules(const std::string& path);

}  // namespace zupm::rules
