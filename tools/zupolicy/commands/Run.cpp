#include "tools/zupolicy/commands/Run.h"

#include <zuPolicyManager/client/Runtime.h>

#include <exception>
#include <ostream>
#include <string>

#include "tools/zupolicy/client/Terminal.h"
#include "tools/zupolicy/commands/CommandLine.h"
#include "tools/zupolicy/report/Colour.h"
#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

/// What standard error is. A line of the file that goes with a message may hold a value that is to be hidden.
Console StandardError(const std::vector<std::string>& arguments)
{
    return {IsTerminal(StandardStream::Error) && !HasOption(arguments, "--redact"), HasColour(StandardStream::Error)};
}

/// Standard output on a full disk must not look like success.
ExitCode Finish(ExitCode code, Streams streams)
{
    streams.data.flush();
    // For `diff` the second code says that the files differ.
    if (!streams.data && (code == ExitCode::Ok || code == ExitCode::NotFound)) {
        throw Failure(ExitCode::Other, "writing to standard output failed");
    }
    return code;
}

ExitCode ParseAndExecute(const std::vector<std::string>& arguments, Streams streams)
{
    const ParsedLine line = ParseCommandLine(arguments);
    if (line.help) {
        streams.data << *line.help;
        return Finish(ExitCode::Ok, streams);
    }
    const Runtime runtime;
    return Finish(line.action(streams), streams);
}

/// What a failed run prints on standard output: also after a part of a report, and even if a stream that failed before
/// fails again.
void PrintFailure(const Problem& problem, std::ostream& data)
{
    data.clear();
    WriteFailure(data, problem);
    data.flush();
}

/// Reports the current exception.
Problem Report(Streams streams)
{
    try {
        throw;
    } catch (const UsageFailure& failure) {
        streams.messages.Complain(failure.what());
        streams.messages.Line(failure.Advice());
        return failure.What();
    } catch (const Failure& failure) {
        Problem problem = CurrentProblem({});
        streams.messages.Complain(failure.what());
        PrintExcerpt(streams.messages, problem);
        return problem;
    } catch (const std::exception&) {
        Problem problem = CurrentProblem({});
        streams.messages.Complain(LineOf(problem));
        return problem;
    }
}

ExitCode RunGuarded(const std::vector<std::string>& arguments, Streams streams)
{
    try {
        return ParseAndExecute(arguments, streams);
    } catch (const std::exception&) {
        const Problem problem = Report(streams);
        if (HasOption(arguments, "--json")) {
            PrintFailure(problem, streams.data);
        }
        return problem.exit;
    }
}

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages) noexcept
{
    try {
        Messages lines(messages, StandardError(arguments));
        return static_cast<int>(RunGuarded(arguments, Streams{out, lines}));
    } catch (const std::exception&) {
        return static_cast<int>(ExitCode::Other);  // not even the report found memory
    }
}

}  // namespace zupm::tool
