/// The command line tool against hostile files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace zupm::test {

/// One command on the file of one attack on the component.
struct ToolAttack {
    /// The attack's label.
    std::string_view file;
    /// The command after the program's name; the file is in.xml.
    std::vector<const char*> command;
    int exitCode = 0;
    /// The number of times that the command reads or writes everything in the file, and holds it in memory.
    int calls = 2;
    int documents = 1;
};

[[nodiscard]] std::span<const ToolAttack> ToolAttacks();

/// The result of one run.
struct ToolCost {
    int exitCode = -1;
    double seconds = 0;  ///< processor time
    std::uint64_t peakBytes = 0;
};

/// Makes the attack's file of `size` bytes and runs the tool on it. The tool's output is dropped.
[[nodiscard]] ToolCost RunToolAttack(const ToolAttack& attack, std::size_t size);

}  // namespace zupm::test
