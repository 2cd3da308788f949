/// What the tool prints with --json, against its schemas.
#pragma once

#include <string>
#include <vector>

#include "ToolProcess.h"

namespace zupm::test {

/// Expects of a run with --json: every document that it printed begins with the schema's version and fits the schema of
/// the command; a run that failed has printed something, and a failure has the run's exit code.
void ExpectJsonOf(const std::vector<std::string>& arguments, const ToolRun& run);

}  // namespace zupm::test
