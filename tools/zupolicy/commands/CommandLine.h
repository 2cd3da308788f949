/// Turns arguments into a command.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// A command to run, or none and the exit code (help was printed, or the command line is wrong).
struct ParsedLine {
    std::optional<Command> command;
    ExitCode exitCode = ExitCode::Ok;
};

/// Reads a command line. Help goes to the data stream, complaints to the messages.
[[nodiscard]] ParsedLine ParseCommandLine(const std::vector<std::string>& arguments, Streams streams);

}  // namespace zupm::tool
