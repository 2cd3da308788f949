// Loads. The component also builds its indexes; the peers build their tree.
#include "bench/PlainFiles.h"
#include "bench/operations/Client.h"
#include "bench/operations/Operations.h"
#include "bench/operations/Peers.h"

namespace zupm::bench {

namespace {

/// Small files are loaded several times in one sample.
int RepetitionsFor(const std::string& file)
{
    constexpr std::size_t kBytesOfASample = 4'000'000;
    return static_cast<int>(kBytesOfASample / (SizeOf(file) + 1)) + 1;
}

void TakeTasksOut(IPolicyFile& file)
{
    const ComPtr<ITaskInfo> tasks = TasksOf(file);
    Bstr softwareId;
    Bstr taskId;
    for (HRESULT result = tasks->GetFirst(softwareId.Slot(), taskId.Slot()); result >= 0;
         result = tasks->GetNext(softwareId.Slot(), taskId.Slot())) {
        ComPtr<IUnknown> task;
        DemandSuccess(file.GetTask(softwareId.Get(), taskId.Get(), task.Put()), "GetTask");
    }
}

}  // namespace

Operation Load(const Subject& subject)
{
    const std::string path = subject.file;
    if (subject.contender == "component") {
        return {[path] { Use(LoadedPolicyFile(path)); }, RepetitionsFor(path)};
    }
    const LoadTree load = TreeLoaderOf(subject.contender);
    return {[path, load] { Demand(load(path)->RootName() == "PolicyFile", "finding the document element"); },
            RepetitionsFor(path)};
}

Operation TakeEverythingOut(const Subject& subject)
{
    return {[subject] {
        const ComPtr<IPolicyFile> file = LoadedPolicyFile(subject.file);
        for (int product = 0; product < subject.number; ++product) {
            Use(PolicyOf(*file, ProductName(product)));
        }
        TakeTasksOut(*file);
    }};
}

}  // namespace zupm::bench
