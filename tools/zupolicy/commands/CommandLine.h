/// Turns arguments into an action.
#pragma once

#include <string>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// What to do; nothing, and the exit code, when help was printed or the command line is wrong.
struct ParsedLine {
    Action action;
    ExitCode exitCode = ExitCode::Ok;
};

/// Reads a command line. Help goes to the data stream, a complaint to the messages.
[[nodiscard]] ParsedLine ParseCommandLine(const std::vector<std::string>& arguments, Streams streams);

}  // namespace zupm::tool
