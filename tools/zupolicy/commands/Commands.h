/// The commands themselves, one source file each. Failures leave them as Failure.
#pragma once

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

[[nodiscard]] ExitCode RunCommand(const ShowOptions& options, Streams streams);
[[nodiscard]] ExitCode RunCommand(const GetOptions& options, Streams streams);
[[nodiscard]] ExitCode RunCommand(const SetOptions& options, Streams streams);
[[nodiscard]] ExitCode RunCommand(const RemoveOptions& options, Streams streams);
[[nodiscard]] ExitCode RunCommand(const ExportIniOptions& options, Streams streams);
[[nodiscard]] ExitCode RunCommand(const CheckOptions& options, Streams streams);

}  // namespace zupm::tool
