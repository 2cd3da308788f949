/// A client of the component, as small as the benchmarks need.
#pragma once

#include <zuPolicyManager/zuPolicyManager.h>

#include <memory>
#include <string>

namespace zupm::bench {

struct Releaser {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <class Interface>
using Owner = std::unique_ptr<Interface, Releaser>;

struct StringFreer {
    void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
using OwnedString = std::unique_ptr<OLECHAR, StringFreer>;

/// ASCII to the component's string.
[[nodiscard]] OwnedString Wide(const std::string& ascii);

/// Ends the program with a message when a call failed: a benchmark of failures would measure nothing.
void Demand(HRESULT result, const char* call);

[[nodiscard]] Owner<IPolicyFile> NewPolicyFile();
[[nodiscard]] Owner<IPolicyFile> LoadedPolicyFile(const std::string& path);
[[nodiscard]] Owner<IPolicyProduct> PolicyOf(IPolicyFile& file, const std::string& softwareId);
[[nodiscard]] Owner<IPolicyTask> NewTask(const std::string& softwareId, const std::string& taskId);

}  // namespace zupm::bench
