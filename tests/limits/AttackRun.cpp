#include "tests/limits/AttackRun.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

/// Below this the clock is too coarse to compare two times.
constexpr double kComparable = 0.4;
constexpr int kMostTries = 8;

}  // namespace

AttackRun RunAttack(const Attack& attack, std::size_t size, int repeats)
{
    const TempFolder folder;
    folder.Write(u"in.xml", attack.file(size));
    const ChildRun child =
        RunChild({ZUPM_ATTACKER, folder.Folder(), {}},
                 {std::string(attack.label), (folder.Folder() / "in.xml").string(), std::to_string(repeats)});
    AttackRun run;
    std::istringstream line(child.out);
    if (child.exitCode != 0 || !(line >> run.code >> run.seconds >> run.peakBytes)) {
        throw std::runtime_error(std::string(attack.label) + " ended with " + std::to_string(child.exitCode) + ": " +
                                 child.out + child.messages);
    }
    return run;
}

Measured Measure(const Attack& attack, std::size_t size)
{
    Measured measured{RunAttack(attack, size, 1), std::nullopt};
    double half = 0;
    for (int tries = 1;; ++tries) {
        const double full = measured.full.seconds;
        if (full >= kComparable) {
            const double again = RunAttack(attack, size / 2, 1).seconds;
            half = tries == 1 ? again : std::min(half, again);
            measured.ratio = full / half;
        } else {
            measured.ratio = std::nullopt;
        }
        if (tries == kMostTries || (full <= MostSeconds(attack) && measured.ratio.value_or(0) <= kMostRatio)) {
            return measured;
        }
        measured.full.seconds = std::min(full, RunAttack(attack, size, 1).seconds);
    }
}

}  // namespace zupm::test
