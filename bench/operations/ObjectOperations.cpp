// The objects: taking out, reading and changing settings, handing back, enumerating.
#include <memory>

#include "bench/operations/Client.h"
#include "bench/operations/Operations.h"

namespace zupm::bench {

namespace {

/// The arguments of a call for one setting; every product of 2,000 settings has it.
struct SettingNames {
    Bstr section = Wide("Section20");
    Bstr existing = Wide(SettingName(1010));
    Bstr added = Wide("New");
    Bstr values[2] = {Wide("one value"), Wide("another value")};
};

/// The first product of the file.
ComPtr<IPolicyProduct> FirstPolicy(const std::string& path)
{
    return PolicyOf(*LoadedPolicyFile(path), ProductName(0));
}

}  // namespace

Operation GetPolicy(const Subject& subject)
{
    return {[file = LoadedPolicyFile(subject.file), name = ProductName(subject.number)] { Use(PolicyOf(*file, name)); },
            10};
}

Operation GetSectionSetting(const Subject& subject)
{
    return {[product = FirstPolicy(subject.file), names = std::make_shared<SettingNames>()] {
                Bstr value;
                DemandSuccess(product->GetSectionSetting(names->section.Get(), names->existing.Get(), value.Slot()),
                              "GetSectionSetting");
            },
            20'000};
}

Operation PutExistingSetting(const Subject& subject)
{
    return {[product = FirstPolicy(subject.file), names = std::make_shared<SettingNames>(), turn = 0]() mutable {
                turn = 1 - turn;
                DemandSuccess(
                    product->PutSectionSetting(names->section.Get(), names->existing.Get(), names->values[turn].Get()),
                    "PutSectionSetting");
            },
            20'000};
}

Operation PutAndRemoveNewSetting(const Subject& subject)
{
    return {[product = FirstPolicy(subject.file), names = std::make_shared<SettingNames>()] {
                DemandSuccess(
                    product->PutSectionSetting(names->section.Get(), names->added.Get(), names->values[0].Get()),
                    "PutSectionSetting");
                DemandSuccess(product->RemoveSetting(names->section.Get(), names->added.Get()), "RemoveSetting");
            },
            1000};
}

Operation AddPolicy(const Subject& subject)
{
    const ComPtr<IPolicyFile> file = LoadedPolicyFile(subject.file);
    return {[file, product = PolicyOf(*file, ProductName(subject.number))] {
                DemandSuccess(file->AddPolicy(product.Get(), 1), "AddPolicy");
            },
            20};
}

Operation AddTask(const Subject& subject)
{
    return {[file = LoadedPolicyFile(subject.file), task = NewTask(ProductName(5), "{task-new}")] {
                DemandSuccess(file->AddTask(task.Get(), 1), "AddTask");
            },
            10};
}

Operation EnumerateTasks(const Subject& subject)
{
    return {[file = LoadedPolicyFile(subject.file), expected = subject.number] {
                const ComPtr<ITaskInfo> tasks = TasksOf(*file);
                Bstr softwareId;
                Bstr taskId;
                int count = 0;
                for (HRESULT result = tasks->GetFirst(softwareId.Slot(), taskId.Slot()); result >= 0;
                     result = tasks->GetNext(softwareId.Slot(), taskId.Slot())) {
                    ++count;
                }
                Demand(count == expected, "enumerating all tasks");
            },
            5};
}

}  // namespace zupm::bench
