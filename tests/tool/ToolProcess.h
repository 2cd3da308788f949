/// Runs the tool.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace zupm::test {

/// What a run left behind; texts are UTF-8.
struct ToolRun {
    int exitCode = -1;
    std::string out;
    std::string messages;
};

/// For the messages of failed tests.
inline void PrintTo(const ToolRun& run, std::ostream* stream)
{
    *stream << "exit code " << run.exitCode << "\nout: " << run.out << "\nmessages: " << run.messages;
}

/// Where a run takes place.
struct ToolPlace {
    /// The folder that the tool runs in; its streams go through files in it that are removed again.
    std::filesystem::path folder;
    /// Takes standard output in place of the run's `out`; empty for none.
    std::string outDevice;
};

/// Runs the tool and waits for it. The component is not registered for it.
[[nodiscard]] ToolRun RunTool(const ToolPlace& place, const std::vector<std::string>& arguments);

}  // namespace zupm::test
