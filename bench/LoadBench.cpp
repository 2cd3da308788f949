// Loading: 16 MB UTF-8, 16 MB UTF-16, 160 MB UTF-8. The component also builds its indexes; the peers build their tree.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include "bench/Client.h"
#include "bench/Peers.h"
#include "bench/SampleFiles.h"

namespace zupm::bench {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;

/// Gives back what earlier benchmarks left in the heap: the next one should not pay for its tidying.
void StartWithACleanHeap()
{
    malloc_trim(0);
}

/// Parameters: megabytes, whether UTF-16.
void Component(benchmark::State& state)
{
    const std::size_t bytes = static_cast<std::size_t>(state.range(0)) * kMegabyte;
    const std::string& path = FileOfSize(bytes, state.range(1) != 0);
    StartWithACleanHeap();
    for (auto _ : state) {
        benchmark::DoNotOptimize(LoadedPolicyFile(path).Get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void LoadTree(benchmark::State& state, LoadPeer load)
{
    const std::size_t bytes = static_cast<std::size_t>(state.range(0)) * kMegabyte;
    const std::string& path = FileOfSize(bytes, state.range(1) != 0);
    StartWithACleanHeap();
    for (auto _ : state) {
        benchmark::DoNotOptimize(load(path).get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void Sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Args({16, 0})->Args({16, 1})->Args({160, 0})->Unit(benchmark::kMillisecond)->MinTime(3.0);
}

BENCHMARK(Component)->Name("load/component")->Apply(Sizes);
BENCHMARK_CAPTURE(LoadTree, libxml2, LoadWithLibxml2)->Name("load/libxml2")->Apply(Sizes);
BENCHMARK_CAPTURE(LoadTree, pugixml, LoadWithPugixml)->Name("load/pugixml")->Apply(Sizes);

}  // namespace
}  // namespace zupm::bench
