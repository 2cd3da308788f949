#include "tools/zupolicy/commands/Run.h"

#include <exception>
#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <variant>

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/CommandLine.h"
#include "tools/zupolicy/commands/Commands.h"

namespace zupm::tool {
namespace {

void Complain(Streams streams, std::string_view text)
{
    streams.messages.Line("zupolicy: " + std::string(text));
}

ExitCode Execute(const Command& command, Streams streams)
{
    const Runtime runtime;
    return std::visit([&](const auto& options) { return RunCommand(options, streams); }, command);
}

ExitCode ParseAndExecute(const std::vector<std::string>& arguments, Streams streams)
{
    const ParsedLine line = ParseCommandLine(arguments, streams);
    if (!line.command) {
        return line.exitCode;
    }
    return Execute(*line.command, streams);
}

/// A full disk behind standard output must not look like success.
ExitCode Finish(ExitCode code, Streams streams)
{
    streams.data.flush();
    if (!streams.data && code == ExitCode::Ok) {
        Complain(streams, "standard output cannot be written");
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
