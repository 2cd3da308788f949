#include "tests/limits/Measure.h"

#include <sys/resource.h>

#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/limits/native/Seconds.h"

namespace zupm::test {

double ProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

std::uint64_t PeakMemory()
{
    // Not ru_maxrss: it includes the pages of the parent, which the process had before it became this program.
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            std::uint64_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("the system does not report the peak memory");
}

}  // namespace zupm::test
