/// The members whose names are the same in every policy file.
#pragma once

#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::rules {

/// Refuses a name of a member that its object never has: a mistyped "polices" would be a rule that no file can break.
/// IDs and the names of sections and settings may be any. Throws model::JsonComplaint.
///
/// The rules must not lead to themselves without a step into the file.
void RequireKnownNames(const Rule& root);

}  // namespace zupm::rules
