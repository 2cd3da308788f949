// The objects: GetPolicy of 2,000 settings, reading and writing settings, AddPolicy into 1,000 products, AddTask into
// 2,000 tasks, enumeration of 10,000 tasks.
#include <benchmark/benchmark.h>

#include "bench/Client.h"
#include "bench/SampleFiles.h"

namespace zupm::bench {
namespace {

constexpr int kManySettings = 2000;

ComPtr<IPolicyFile> FileWithOneLargeProduct()
{
    return LoadedPolicyFile(FileOfShape(1, kManySettings, 1));
}

void GetPolicy(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = FileWithOneLargeProduct();
    for (auto _ : state) {
        benchmark::DoNotOptimize(PolicyOf(*file, ProductName(0)).Get());
    }
}
BENCHMARK(GetPolicy)->Name("GetPolicy of 2,000 settings/component")->Unit(benchmark::kMicrosecond);

void GetSectionSetting(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = FileWithOneLargeProduct();
    const ComPtr<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const Bstr section = Wide("Section20");
    const Bstr name = Wide(SettingName(1010));
    Bstr value;
    for (auto _ : state) {
        Demand(product->GetSectionSetting(section.Get(), name.Get(), value.Slot()), "GetSectionSetting");
    }
}
BENCHMARK(GetSectionSetting)->Name("GetSectionSetting/component")->Unit(benchmark::kMicrosecond);

void PutExistingSetting(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = FileWithOneLargeProduct();
    const ComPtr<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const Bstr section = Wide("Section20");
    const Bstr name = Wide(SettingName(1010));
    const Bstr values[] = {Wide("one value"), Wide("another value")};
    std::size_t turn = 0;
    for (auto _ : state) {
        Demand(product->PutSectionSetting(section.Get(), name.Get(), values[++turn % 2].Get()), "PutSectionSetting");
    }
}
BENCHMARK(PutExistingSetting)->Name("PutSectionSetting, existing/component")->Unit(benchmark::kMicrosecond);

void PutNewSetting(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = FileWithOneLargeProduct();
    const ComPtr<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const Bstr section = Wide("Section20");
    const Bstr name = Wide("New");
    const Bstr value = Wide("value");
    for (auto _ : state) {
        Demand(product->PutSectionSetting(section.Get(), name.Get(), value.Get()), "PutSectionSetting");
        state.PauseTiming();
        Demand(product->RemoveSetting(section.Get(), name.Get()), "RemoveSetting");
        state.ResumeTiming();
    }
}
BENCHMARK(PutNewSetting)->Name("PutSectionSetting, new/component")->Unit(benchmark::kMicrosecond);

void AddPolicy(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = LoadedPolicyFile(FileOfShape(1000, 20, 1));
    const ComPtr<IPolicyProduct> product = PolicyOf(*file, ProductName(500));
    for (auto _ : state) {
        Demand(file->AddPolicy(product.Get(), 1), "AddPolicy");
    }
}
BENCHMARK(AddPolicy)->Name("AddPolicy into 1,000 products/component")->Unit(benchmark::kMicrosecond);

void AddTask(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = LoadedPolicyFile(FileOfShape(10, 20, 2000));
    const ComPtr<IPolicyTask> task = NewTask(ProductName(5), "{task-new}");
    for (auto _ : state) {
        Demand(file->AddTask(task.Get(), 1), "AddTask");
    }
}
BENCHMARK(AddTask)->Name("AddTask into 2,000 tasks/component")->Unit(benchmark::kMicrosecond);

void Enumerate(benchmark::State& state)
{
    const ComPtr<IPolicyFile> file = LoadedPolicyFile(FileOfShape(10, 20, 10000));
    for (auto _ : state) {
        ComPtr<IUnknown> object;
        Demand(file->GetTaskInfo(object.Put()), "GetTaskInfo");
        ComPtr<ITaskInfo> tasks;
        Demand(object.Query(IID_ITaskInfo, tasks), "QueryInterface");
        Bstr softwareId;
        Bstr taskId;
        int count = 0;
        for (HRESULT result = tasks->GetFirst(softwareId.Slot(), taskId.Slot()); result >= 0;
             result = tasks->GetNext(softwareId.Slot(), taskId.Slot())) {
            ++count;
        }
        Demand(count == 10000 ? 0 : -1, "enumeration of all tasks");
    }
}
BENCHMARK(Enumerate)->Name("enumerate 10,000 tasks/component")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zupm::bench
