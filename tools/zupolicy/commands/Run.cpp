#include "tools/zupolicy/commands/Run.h"

#include <zuPolicyManager/client/Runtime.h>

#include <exception>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/CommandLine.h"

namespace zupm::tool {
namespace {

void Complain(Streams streams, std::string_view text)
{
    streams.messages.Line("zupolicy: " + std::string(text));
}

ExitCode ParseAndExecute(const std::vector<std::string>& arguments, Streams streams)
{
    const ParsedLine line = ParseCommandLine(arguments, streams);
    if (!line.action) {
        return line.exitCode;
    }
    const Runtime runtime;
    return line.action(streams);
}

/// Standard output on a full disk must not look like success.
ExitCode Finish(ExitCode code, Streams streams)
{
    streams.data.flush();
    // For `diff` the second code says that the files differ.
    if (!streams.data && (code == ExitCode::Ok || code == ExitCode::NotFound)) {
        Complain(streams, "writing to standard output failed");
        return ExitCode::Other;
    }
    return code;
}

ExitCode RunGuarded(const std::vector<std::string>& arguments, Streams streams)
{
    try {
        return Finish(ParseAndExecute(arguments, streams), streams);
    } catch (const Failure& failure) {
        Complain(streams, failure.what());
        return failure.Code();
    } catch (const std::bad_alloc&) {
        Complain(streams, "out of memory");
    } catch (const std::exception& error) {
        Complain(streams, error.what());
    }
    return ExitCode::Other;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages) noexcept
{
    Messages lines(messages);
    return static_cast<int>(RunGuarded(arguments, Streams{out, lines}));
}

}  // namespace zupm::tool
