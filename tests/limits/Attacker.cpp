// Runs one attack in a process of its own, so that its memory can be measured:
//   limits_attacker LABEL FILE
// The last line is "code seconds bytes": the attack's result, its processor time, the peak memory.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/limits/Attack.h"
#include "tests/limits/Measure.h"
#include "tests/support/ComponentHost.h"

using namespace zupm::test;

namespace {

constexpr double kMostSeconds = 60;

/// An attack that succeeds must not stop the tests. Processor time is measured because the machine may do other work.
void EndInTheEnd()
{
    std::thread([] {
        while (ProcessorSeconds() < kMostSeconds) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        std::puts("no end in sight");
        std::fflush(stdout);
        std::_Exit(EXIT_FAILURE);
    }).detach();
}

}  // namespace

int main(int argc, char** argv)
{
    const Attack* const attack = argc == 3 ? FindAttack(argv[1]) : nullptr;
    const ComponentHost host;
    if (attack == nullptr || FAILED(host.Started())) {
        return EXIT_FAILURE;
    }
    EndInTheEnd();
    const double begin = ProcessorSeconds();
    const HRESULT code = attack->run(std::filesystem::path(argv[2]).u16string());
    const double seconds = ProcessorSeconds() - begin;
    std::printf("%d %.6f %llu\n", static_cast<int>(code), seconds, static_cast<unsigned long long>(PeakMemory()));
    return EXIT_SUCCESS;
}
