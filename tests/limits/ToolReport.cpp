// Prints the cost of hostile files for the command line tool on this machine as a table:
//   limits_tool_report [WORD]     only the files that have the word in their label
#include <cstdio>
#include <string>

#include "tests/limits/AttackRun.h"
#include "tests/limits/ToolRun.h"

using namespace zupm::test;

namespace {

std::string CommandText(const ToolAttack& attack)
{
    std::string text;
    for (const std::string argument : attack.command) {
        text += argument == "in.xml" || argument == "out.xml" ? "" : argument + " ";
    }
    text.pop_back();
    return text;
}

void PrintRow(const ToolAttack& attack)
{
    constexpr double kMebibyte = 1 << 20;
    const ToolCost cost = RunToolAttack(attack, kLargestAttack);
    const double half = RunToolAttack(attack, kLargestAttack / 2).seconds;
    std::printf("| `%s` | %s | %d | %d | %d | %.2f | %.0f | %.2f |\n", CommandText(attack).c_str(),
                std::string(attack.file).c_str(), attack.calls, attack.documents, cost.exitCode, cost.seconds,
                static_cast<double>(cost.peakBytes) / kMebibyte, cost.seconds / half);
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string_view word = argc > 1 ? argv[1] : "";
    std::puts("| command | file, 16 MiB | calls | documents | exit code | seconds | peak MiB | 16 against 8 MiB |");
    std::puts("|---|---|---|---|---|---|---|---|");
    for (const ToolAttack& attack : ToolAttacks()) {
        if (attack.file.find(word) != std::string_view::npos) {
            PrintRow(attack);
            std::fflush(stdout);
        }
    }
    return 0;
}
