/// A policy file against rules.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/rules/Document.h"
#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::rules {

/// A part of a file that breaks a rule.
struct Violation {
    Severity severity = Severity::Error;
    tool::Offset at = 0;
    std::string path;     ///< as Describe gives it
    std::string pointer;  ///< as PointerOf gives it
    std::string message;
};

/// Everything that breaks a rule, in the order of the file. Hidden values are in no message.
[[nodiscard]] std::vector<Violation> CheckRules(const RuleSet& rules, const Node& document,
                                                const tool::Redaction& redaction);

}  // namespace zupm::rules
