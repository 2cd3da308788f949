/// Failures as data: one line for people, one object for programs.
#pragma once

#include <zuPolicyManager/client/Error.h>

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

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

/// "file:line:column: message [Name, 0xFFFFFB49]; hint".
[[nodiscard]] std::string LineOf(const Problem& problem);

/// A problem on its way to the command that reports it. The line for people is its message.
class ProblemFailure : public Failure {
public:
    explicit ProblemFailure(Problem problem);
    /// With a line for people of its own.
    ProblemFailure(Problem problem, const std::string& line)
        : Failure(problem.exit, line), m_problem(std::move(problem))
    {
    }

    [[nodiscard]] const Problem& What() const noexcept { return m_problem; }

private:
    Problem m_problem;
};

/// A problem whose line for people is shorter: "file: message (hint)".
[[nodiscard]] ProblemFailure ShortFailure(Problem problem);

/// The problem that the current exception is about; `file` is the one that was worked on. Call it in a handler only.
[[nodiscard]] Problem CurrentProblem(const std::string& file);

/// What a call of the component is about, in the tool's own words.
struct Subject {
    std::string file;   ///< may be empty
    std::string about;  ///< what in the file, such as "policy PRODUCTA1000"; empty for the file itself
};

/// The problem of a failed call.
[[nodiscard]] Problem ProblemOf(const Error& error, const Subject& subject);

/// Calls `call`; what the component refuses leaves it as a ProblemFailure.
template <typename Call>
decltype(auto) Calling(const Subject& subject, const Call& call)
{
    try {
        return call();
    } catch (const Error& error) {
        throw ProblemFailure(ProblemOf(error, subject));
    }
}

/// Throws ProblemFailure for a negative result of an interface, with the thread's error information.
void Check(HRESULT result, const Subject& subject);

/// The member "error" of an object: code, name, exit, file, line, column, message, hint. What is not known is null.
void WriteProblem(JsonWriter& json, const Problem& problem);
/// A failed run as one line of JSON.
void WriteFailure(std::ostream& out, const Problem& problem);

}  // namespace zupm::tool
