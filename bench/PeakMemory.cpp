#include "bench/PeakMemory.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "bench/Client.h"
#include "bench/Peers.h"

namespace zupm::bench {

void LoadOnce(const std::string& contender, const std::string& path)
{
    if (contender == "component") {
        (void)LoadedPolicyFile(path);
    } else {
        (void)(contender == "libxml2" ? LoadWithLibxml2 : LoadWithPugixml)(path);
    }
}

std::size_t PeakBytesOfLoad(const std::string& contender, const std::string& path)
{
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "zupm_bench", "--load-once", contender.c_str(), path.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0) {
        std::fprintf(stderr, "measuring the memory of %s failed\n", contender.c_str());
        std::exit(1);
    }
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

}  // namespace zupm::bench
