/// The whole tool, as its entry points call it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// Runs one command line (without the program's name, UTF-8): data to `out`, everything else to `messages`.
/// `console` is what `messages` is. The result is the process's exit code (ExitCode.h). No exception leaves it.
[[nodiscard]] int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages,
                      Console console) noexcept;

}  // namespace zupm::tool
