/// Failures as data: one line for people, one object for programs.
#pragma once

#include <zuPolicyManager/Results.h>

#include <cstdint>
#include <optional>
#include <string>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {

/// What is known about a failure; texts are UTF-8.
struct Problem {
    std::optional<result::Code> code;  ///< nothing when the tool itself has failed
    ExitCode exit = ExitCode::Other;
    std::string file;  ///< may be empty
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::string message;  ///< without file and place
    std::string hint;     ///< may be empty
};

/// A problem on its way to the command that reports it. The line for people is its message.
class ProblemFailure : public Failure {
public:
    explicit ProblemFailure(Problem problem);

    [[nodiscard]] const Problem& What() const noexcept { return m_problem; }

private:
    Problem m_problem;
};

/// The problem that the current exception is about; `file` is the one that was worked on. Call it in a handler only.
[[nodiscard]] Problem CurrentProblem(const std::string& file);

/// "file:line:column: message [Name, 0xFFFFFB49]; hint".
[[nodiscard]] std::string LineOf(const Problem& problem);

/// The member "error" of an object: code, name, exit, file, line, column, message, hint. What is not known is null.
void WriteProblem(JsonWriter& json, const Problem& problem);

}  // namespace zupm::tool
