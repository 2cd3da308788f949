/// Runs the tool.
#pragma once

#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace zupm::test {

using ToolRun = ChildRun;

/// Where a run takes place.
struct ToolPlace {
    std::filesystem::path folder;
    /// Takes standard output in place of the run's `out`; empty for none.
    std::string outDevice;
    /// A file that is standard input; empty: that of the test.
    std::filesystem::path input{};
};

/// Runs the tool and waits for it.
[[nodiscard]] inline ToolRun RunTool(const ToolPlace& place, const std::vector<std::string>& arguments)
{
    return RunChild({ZUPM_TOOL, place.folder, place.outDevice, place.input}, arguments);
}

}  // namespace zupm::test
