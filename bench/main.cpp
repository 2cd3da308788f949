// Runs every benchmark, then prints one table with ratios and the peak memory of a 160 MB load.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>

#include "bench/PeakMemory.h"
#include "bench/SampleFiles.h"
#include "bench/TableReporter.h"

namespace {

constexpr std::size_t kLargeFile = 160'000'000;

void PrintPeakMemory()
{
    std::printf("\n| peak memory of loading 160 MB | of the file's size |\n|---|---|\n");
    for (const char* contender : {"component", "libxml2", "pugixml"}) {
        const std::size_t peak = zupm::bench::PeakBytesOfLoad(contender, zupm::bench::FileOfSize(kLargeFile, false));
        std::printf("| %s | %.2fx |\n", contender, static_cast<double>(peak) / static_cast<double>(kLargeFile));
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--load-once") == 0) {
        zupm::bench::LoadOnce(argv[2], argv[3]);
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    zupm::bench::TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.Print();
    PrintPeakMemory();
    return 0;
}
