/// What breaks the rules of `check --rules`, and how it is printed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Streams.h"
#include "tools/zupolicy/rules/Check.h"

namespace zupm::tool {

/// A violation with its place.
struct RuleProblem {
    rules::Violation violation;
    std::uint64_t line = 1;
    std::uint64_t column = 1;

    [[nodiscard]] bool IsError() const { return violation.severity == rules::Severity::Error; }
};

/// Violations in the order of the file, whose text this is, with their places.
[[nodiscard]] std::vector<RuleProblem> Placed(std::vector<rules::Violation> violations, std::string_view text);

/// "file:line:column: policy PRODUCTA1000 General/Enabled: is missing", with "warning: " before the policy for a
/// warning.
void PrintProblem(Messages& messages, const std::string& file, const RuleProblem& problem);
/// severity, line, column, path, pointer, message.
void WriteProblem(JsonWriter& json, const RuleProblem& problem);

}  // namespace zupm::tool
