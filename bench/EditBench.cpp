// One edit of a loaded 16 MB file and the write that follows. The component takes the product out, changes it, hands it
// back and replaces the file atomically, flushed to the disk; the peers change their tree and overwrite the file.
#include <benchmark/benchmark.h>

#include "bench/Client.h"
#include "bench/Peers.h"
#include "bench/SampleFiles.h"

namespace zupm::bench {
namespace {

constexpr std::size_t kFileBytes = 16'000'000;
constexpr int kProduct = 100;
constexpr int kSetting = 20;

void Component(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = LoadedPolicyFile(FileOfSize(kFileBytes, false));
    const Bstr path = Wide(ScratchFile("component.xml"));
    int value = 0;
    for (auto _ : state) {
        const ComPtr<IPolicyProduct> product = PolicyOf(*file, ProductName(kProduct));
        Demand(product->PutSectionSetting(Wide("Section0").Get(), Wide(SettingName(kSetting)).Get(),
                                          Wide(std::to_string(++value)).Get()),
               "PutSectionSetting");
        Demand(file->AddPolicy(product.Get(), 1), "AddPolicy");
        Demand(file->WriteFile(path.Get(), 0), "WriteFile");
    }
}

void EditTree(benchmark::State& state, LoadPeer load, const char* name)
{
    const std::unique_ptr<Peer> peer = load(FileOfSize(kFileBytes, false));
    const std::string path = ScratchFile(name);
    int value = 0;
    for (auto _ : state) {
        peer->Set(ProductName(kProduct), SettingName(kSetting), std::to_string(++value));
        peer->Write(path);
    }
}

BENCHMARK(Component)->Name("edit and write 16 MB/component")->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(EditTree, libxml2, LoadWithLibxml2, "libxml2.xml")
    ->Name("edit and write 16 MB/libxml2")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(EditTree, pugixml, LoadWithPugixml, "pugixml.xml")
    ->Name("edit and write 16 MB/pugixml")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

}  // namespace
}  // namespace zupm::bench
