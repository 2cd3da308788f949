#include "tests/limits/Measure.h"

#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

#include <stdexcept>

namespace zupm::test {

namespace {

double Seconds(const FILETIME& time)
{
    return static_cast<double>((static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime) / 1e7;
}

}  // namespace

double ProcessorSeconds()
{
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    if (GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user) == 0) {
        throw std::runtime_error("the system does not tell the processor time");
    }
    return Seconds(kernel) + Seconds(user);
}

std::uint64_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) == 0) {
        throw std::runtime_error("the system does not tell the peak memory");
    }
    return counters.PeakWorkingSetSize;
}

}  // namespace zupm::test
