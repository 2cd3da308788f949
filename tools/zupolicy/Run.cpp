#include "Run.h"

#include <exception>
#include <new>
#include <ostream>
#include <string_view>
#include <variant>

#include "CommandLine.h"
#include "Failure.h"
#include "com/Runtime.h"
#include "commands/Commands.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kPrefix = "zupolicy: ";

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
        streams.messages << kPrefix << "standard output cannot be written\n";
        return ExitCode::Other;
    }
    return code;
}

ExitCode RunGuarded(const std::vector<std::string>& arguments, Streams streams)
{
    try {
        return Finish(ParseAndExecute(arguments, streams), streams);
    } catch (const Failure& failure) {
        streams.messages << kPrefix << failure.what() << '\n';
        return failure.Code();
    } catch (const std::bad_alloc&) {
        streams.messages << kPrefix << "out of memory\n";
    } catch (const std::exception& error) {
        streams.messages << kPrefix << error.what() << '\n';
    }
    return ExitCode::Other;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages) noexcept
{
    return static_cast<int>(RunGuarded(arguments, Streams{out, messages}));
}

}  // namespace zupm::tool
