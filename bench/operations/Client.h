/// A client of the component, as small as the benchmarks need.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <string>

#include "bench/Demand.h"
#include "bench/Names.h"

namespace zupm::bench {

/// ASCII to the component's string.
[[nodiscard]] Bstr Wide(const std::string& ascii);

/// Ends the program when a call failed.
void DemandSuccess(HRESULT result, const char* call);

[[nodiscard]] ComPtr<IPolicyFile> NewPolicyFile();
[[nodiscard]] ComPtr<IPolicyFile> LoadedPolicyFile(const std::string& path);
[[nodiscard]] ComPtr<IPolicyProduct> PolicyOf(IPolicyFile& file, const std::string& softwareId);
[[nodiscard]] ComPtr<ITaskInfo> TasksOf(IPolicyFile& file);
[[nodiscard]] ComPtr<IPolicyTask> NewTask(const std::string& softwareId, const std::string& taskId);

}  // namespace zupm::bench
