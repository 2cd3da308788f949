/// Runs programs.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace zupm::test {

/// What a run left; texts are UTF-8.
struct ChildRun {
    int exitCode = -1;  ///< natively -1 for a process that a signal ended
    std::string out;
    std::string messages;
};

/// For the messages of failed tests.
inline void PrintTo(const ChildRun& run, std::ostream* stream)
{
    *stream << "exit code " << run.exitCode << "\nout: " << run.out << "\nmessages: " << run.messages;
}

/// What is run, and where.
struct ChildPlace {
    std::filesystem::path program;
    /// The folder that the program runs in; its streams go through files in it that are removed again.
    std::filesystem::path folder;
    /// Takes standard output in place of the run's `out`; empty for none.
    std::string outDevice;
    /// A file that is standard input; empty: that of the test.
    std::filesystem::path input{};
};

/// Runs a program and waits for it. The component is not registered for it. Several may run in one folder.
[[nodiscard]] ChildRun RunChild(const ChildPlace& place, const std::vector<std::string>& arguments);

}  // namespace zupm::test
