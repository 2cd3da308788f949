#include "tests/limits/Measure.h"

#include <sys/resource.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace zupm::test {

namespace {

double Seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

double ProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

std::uint64_t PeakMemory()
{
    // Not ru_maxrss: that counts the pages of the parent, which the process had before it became this program.
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::uint64_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("the system does not tell the peak memory");
}

}  // namespace zupm::test
