// Writing. The component replaces the file atomically, flushed to the disk; the peers overwrite it.
#include <memory>

#include "bench/PlainFiles.h"
#include "bench/operations/Client.h"
#include "bench/operations/Operations.h"
#include "bench/operations/Peers.h"

namespace zupm::bench {

namespace {

constexpr int kProduct = 100;
constexpr int kSetting = 20;

std::string TargetBeside(const std::string& file)
{
    return file + ".written";
}

void ChangeSetting(IPolicyFile& file, int value)
{
    const ComPtr<IPolicyProduct> product = PolicyOf(file, ProductName(kProduct));
    DemandSuccess(product->PutSectionSetting(Wide("Section0").Get(), Wide(SettingName(kSetting)).Get(),
                                             Wide(std::to_string(value)).Get()),
                  "PutSectionSetting");
    DemandSuccess(file.AddPolicy(product.Get(), 1), "AddPolicy");
}

}  // namespace

Operation WriteFile(const Subject& subject)
{
    const std::string target = TargetBeside(subject.file);
    if (subject.contender == "component") {
        return {[file = LoadedPolicyFile(subject.file), path = std::make_shared<Bstr>(Wide(target))] {
            DemandSuccess(file->WriteFile(path->Get(), 0), "WriteFile");
        }};
    }
    return {[bytes = BytesOf(subject.file), target] { ReplaceFlushed(target, bytes); }};
}

Operation WriteFileBuffer(const Subject& subject)
{
    return {[file = LoadedPolicyFile(subject.file)] {
        Bstr text;
        DemandSuccess(file->WriteFileBuffer(text.Slot()), "WriteFileBuffer");
        Demand(text.Get() != nullptr, "WriteFileBuffer");
    }};
}

Operation EditAndWrite(const Subject& subject)
{
    const std::string target = TargetBeside(subject.file);
    if (subject.contender == "component") {
        return {
            [file = LoadedPolicyFile(subject.file), path = std::make_shared<Bstr>(Wide(target)), value = 0]() mutable {
                ChangeSetting(*file, ++value);
                DemandSuccess(file->WriteFile(path->Get(), 0), "WriteFile");
            }};
    }
    const LoadTree load = TreeLoaderOf(subject.contender);
    return {[tree = std::shared_ptr<Tree>(load(subject.file)), target, value = 0]() mutable {
        tree->Set(ProductName(kProduct), SettingName(kSetting), std::to_string(++value));
        tree->Write(target);
    }};
}

}  // namespace zupm::bench
