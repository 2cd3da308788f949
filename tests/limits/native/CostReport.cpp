// Prints the cost of the attacks in instructions as a table:
//   limits_costs [WORD]      only the attacks that have the word in their label
#include <cstdio>
#include <string>

#include "tests/limits/native/AttackCosts.h"

using namespace zupm::test;

int main(int argc, char** argv)
{
    const std::string_view word = argc > 1 ? argv[1] : "";
    std::vector<Attack> attacks = AllAttacks();
    std::erase_if(attacks, [&](const Attack& attack) { return attack.label.find(word) == std::string_view::npos; });
    const auto costs = CountAttacks(attacks);
    std::puts("| attack | KiB | instructions per byte | growth |\n|---|---|---|---|");
    for (const Attack& attack : attacks) {
        const AttackCost& cost = costs.at(attack.label);
        std::printf("| %s | %zu | %.0f | %.2f |\n", std::string(attack.label).c_str(), attack.countedSize >> 10,
                    cost.PerByte(attack), cost.Growth());
    }
    return 0;
}
