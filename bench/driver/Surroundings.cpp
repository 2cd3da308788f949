#include "bench/driver/Surroundings.h"

#include <fstream>
#include <thread>

#include "bench/driver/Process.h"

namespace zupm::bench {

namespace {

std::string ProcessorName()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) {
            return line.substr(line.find(": ") + 2);
        }
    }
    return "unknown processor";
}

std::string FirstLineOf(const Command& command)
{
    const std::string output = RunProcess(command).output;
    return output.substr(0, output.find('\n'));
}

std::string Tools()
{
    const std::string lxml =
        FirstLineOf({"/usr/bin/python3", "-c", "from lxml import etree; print(etree.__version__)"});
    return "xmlstarlet " + FirstLineOf({"xmlstarlet", "--version"}) + ", lxml " + lxml;
}

}  // namespace

std::string Surroundings()
{
    return ProcessorName() + ", " + std::to_string(std::thread::hardware_concurrency()) + " virtual processors; " +
           ZUPM_COMPILER + "; " + ZUPM_PEERS + "; " + Tools();
}

}  // namespace zupm::bench
