/// A client of the component, as small as the benchmarks need.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <string>

namespace zupm::bench {

/// ASCII to the component's string.
[[nodiscard]] Bstr Wide(const std::string& ascii);

/// Ends the program with a message when a call failed: a benchmark of failures would measure nothing.
void Demand(HRESULT result, const char* call);

[[nodiscard]] ComPtr<IPolicyFile> NewPolicyFile();
[[nodiscard]] ComPtr<IPolicyFile> LoadedPolicyFile(const std::string& path);
[[nodiscard]] ComPtr<IPolicyProduct> PolicyOf(IPolicyFile& file, const std::string& softwareId);
[[nodiscard]] ComPtr<IPolicyTask> NewTask(const std::string& softwareId, const std::string& taskId);

}  // namespace zupm::bench
