/// The whole tool, as its entry points call it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zupm::tool {

/// Runs one command line (without the program's name, UTF-8): data to `out`, everything else to `messages`, which are
/// the process's standard streams. The result is the process's exit code (ExitCode.h). No exception leaves it.
[[nodiscard]] int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& messages) noexcept;

}  // namespace zupm::tool
