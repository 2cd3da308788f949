/// Turns arguments into an action.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// What to do, or the help that was asked for.
struct ParsedLine {
    Action action;
    std::optional<std::string> help;
};

/// A wrong command line: the complaint, and a second line with a way out.
class UsageFailure : public ProblemFailure {
public:
    /// `suggestion` may be empty; it is the hint of the problem, or the advice is.
    UsageFailure(const std::string& complaint, const std::string& suggestion, std::string advice);

    [[nodiscard]] const std::string& Advice() const noexcept { return m_advice; }

private:
    std::string m_advice;
};

/// Whether an option is on the line, also when the rest of the line is wrong.
[[nodiscard]] bool HasOption(const std::vector<std::string>& arguments, std::string_view option);

/// Reads a command line. Throws UsageFailure.
[[nodiscard]] ParsedLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace zupm::tool
