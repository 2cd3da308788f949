// The objects: GetPolicy of 2,000 settings, reading and writing settings, AddPolicy into 1,000 products, AddTask into
// 2,000 tasks, enumeration of 10,000 tasks.
#include <benchmark/benchmark.h>

#include "bench/Client.h"
#include "bench/SampleFiles.h"

namespace zupm::bench {
namespace {

constexpr int kManySettings = 2000;

Owner<IPolicyFile> FileWithOneLargeProduct()
{
    return LoadedPolicyFile(FileOfShape(1, kManySettings, 1));
}

void GetPolicy(benchmark::State& state)
{
    const Owner<IPolicyFile> file = FileWithOneLargeProduct();
    for (auto _ : state) {
        benchmark::DoNotOptimize(PolicyOf(*file, ProductName(0)).get());
    }
}
BENCHMARK(GetPolicy)->Name("GetPolicy of 2,000 settings/component")->Unit(benchmark::kMicrosecond);

void GetSectionSetting(benchmark::State& state)
{
    const Owner<IPolicyFile> file = FileWithOneLargeProduct();
    const Owner<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const OwnedString section = Wide("Section20");
    const OwnedString name = Wide(SettingName(1010));
    BSTR value = nullptr;
    for (auto _ : state) {
        Demand(product->GetSectionSetting(section.get(), name.get(), &value), "GetSectionSetting");
    }
    SysFreeString(value);
}
BENCHMARK(GetSectionSetting)->Name("GetSectionSetting/component")->Unit(benchmark::kMicrosecond);

void PutExistingSetting(benchmark::State& state)
{
    const Owner<IPolicyFile> file = FileWithOneLargeProduct();
    const Owner<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const OwnedString section = Wide("Section20");
    const OwnedString name = Wide(SettingName(1010));
    const OwnedString values[] = {Wide("one value"), Wide("another value")};
    std::size_t turn = 0;
    for (auto _ : state) {
        Demand(product->PutSectionSetting(section.get(), name.get(), values[++turn % 2].get()), "PutSectionSetting");
    }
}
BENCHMARK(PutExistingSetting)->Name("PutSectionSetting, existing/component")->Unit(benchmark::kMicrosecond);

void PutNewSetting(benchmark::State& state)
{
    const Owner<IPolicyFile> file = FileWithOneLargeProduct();
    const Owner<IPolicyProduct> product = PolicyOf(*file, ProductName(0));
    const OwnedString section = Wide("Section20");
    const OwnedString name = Wide("New");
    const OwnedString value = Wide("value");
    for (auto _ : state) {
        Demand(product->PutSectionSetting(section.get(), name.get(), value.get()), "PutSectionSetting");
        state.PauseTiming();
        Demand(product->RemoveSetting(section.get(), name.get()), "RemoveSetting");
        state.ResumeTiming();
    }
}
BENCHMARK(PutNewSetting)->Name("PutSectionSetting, new/component")->Unit(benchmark::kMicrosecond);

void AddPolicy(benchmark::State& state)
{
    const Owner<IPolicyFile> file = LoadedPolicyFile(FileOfShape(1000, 20, 1));
    const Owner<IPolicyProduct> product = PolicyOf(*file, ProductName(500));
    for (auto _ : state) {
        Demand(file->AddPolicy(product.get(), 1), "AddPolicy");
    }
}
BENCHMARK(AddPolicy)->Name("AddPolicy into 1,000 products/component")->Unit(benchmark::kMicrosecond);

void AddTask(benchmark::State& state)
{
    const Owner<IPolicyFile> file = LoadedPolicyFile(FileOfShape(10, 20, 2000));
    const Owner<IPolicyTask> task = NewTask(ProductName(5), "{task-new}");
    for (auto _ : state) {
        Demand(file->AddTask(task.get(), 1), "AddTask");
    }
}
BENCHMARK(AddTask)->Name("AddTask into 2,000 tasks/component")->Unit(benchmark::kMicrosecond);

void Enumerate(benchmark::State& state)
{
    const Owner<IPolicyFile> file = LoadedPolicyFile(FileOfShape(10, 20, 10000));
    for (auto _ : state) {
        IUnknown* unknown = nullptr;
        Demand(file->GetTaskInfo(&unknown), "GetTaskInfo");
        const Owner<IUnknown> owner(unknown);
        void* pointer = nullptr;
        Demand(unknown->QueryInterface(IID_ITaskInfo, &pointer), "QueryInterface");
        const Owner<ITaskInfo> tasks(static_cast<ITaskInfo*>(pointer));
        BSTR softwareId = nullptr;
        BSTR taskId = nullptr;
        int count = 0;
        for (HRESULT result = tasks->GetFirst(&softwareId, &taskId); result >= 0;
             result = tasks->GetNext(&softwareId, &taskId)) {
            ++count;
        }
        SysFreeString(softwareId);
        SysFreeString(taskId);
        Demand(count == 10000 ? 0 : -1, "enumeration of all tasks");
    }
}
BENCHMARK(Enumerate)->Name("enumerate 10,000 tasks/component")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zupm::bench
