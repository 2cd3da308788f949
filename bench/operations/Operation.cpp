#include "bench/operations/Operation.h"

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <limits>
#include <vector>

namespace zupm::bench {

namespace {

double SecondsOf(const Operation& operation)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < operation.repetitions; ++i) {
        operation.run();
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    return passed.count() / operation.repetitions;
}

/// Of this program alone: what the system reports to a parent includes the parent's own pages.
std::size_t PeakBytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::size_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    return 0;
}

}  // namespace

void PrintSamples(const Operation& operation, int warm, int counted)
{
    for (int i = 0; i < warm; ++i) {
        SecondsOf(operation);
    }
    std::vector<double> seconds;
    for (int i = 0; i < counted; ++i) {
        seconds.push_back(SecondsOf(operation));
    }
    const std::size_t peak = PeakBytes();
    for (const double sample : seconds) {
        std::printf("%.9f\n", sample);
    }
    std::printf("%zu\n", peak);
}

void KeepTheHeap() noexcept
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

}  // namespace zupm::bench
