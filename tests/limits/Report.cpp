// Prints the results of the attacks on this machine as a table:
//   limits_report [WORD]      only the attacks that have the word in their label
#include <cstdio>
#include <stdexcept>
#include <string>

#include "tests/limits/AttackRun.h"

using namespace zupm::test;

namespace {

/// The component's own codes are small numbers; those of the platform are written in hexadecimal.
std::string CodeText(HRESULT code)
{
    constexpr HRESULT kSmallestOwn = -10'000;
    char text[16];
    std::snprintf(text, sizeof(text), code >= kSmallestOwn ? "%d" : "0x%08X", static_cast<int>(code));
    return text;
}

void PrintRow(const Attack& attack)
{
    constexpr double kMebibyte = 1 << 20;
    const AttackRun run = RunAttack(attack, kLargestAttack);
    std::printf("| %s | %d | %d | %s | %.2f | %.0f |\n", std::string(attack.label).c_str(), attack.calls,
                attack.documents, CodeText(run.code).c_str(), run.seconds,
                static_cast<double>(run.peakBytes) / kMebibyte);
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string_view word = argc > 1 ? argv[1] : "";
    std::puts("| attack, 16 MiB | calls | documents | code | seconds | peak MiB |");
    std::puts("|---|---|---|---|---|---|");
    for (const Attack& attack : AllAttacks()) {
        if (attack.label.find(word) == std::string_view::npos) {
            continue;
        }
        try {
            PrintRow(attack);
        } catch (const std::runtime_error& error) {
            std::printf("| %s\n", error.what());
        }
        std::fflush(stdout);
    }
    return 0;
}
