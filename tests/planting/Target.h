/// What these tests need of the operating system.
#pragma once

#include <filesystem>
#include <string>

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// The file name of the component, and the variable that names the folders where libraries are looked for.
extern const char* const kComponentName;
extern const char* const kSearchPathVariable;

/// Whether texts of a resource module that is also a library are read: where resource modules are plain texts such a
/// file is none.
extern const bool kLibrariesHaveTexts;

/// Whether a program obeys the variable that makes it log into a file: not with raised rights, which every process
/// under Wine has.
extern const bool kLogsAreWritten;

/// Changes this process's environment, which its children inherit.
void SetVariable(const std::string& name, const std::filesystem::path& value);
[[nodiscard]] std::filesystem::path Variable(const std::string& name);

/// Loads a component by its path and gives its DllGetClassObject; null when it cannot be loaded. It stays loaded.
using GetClassObject = HRESULT (*)(REFCLSID clsid, REFIID iid, void** out);
[[nodiscard]] GetClassObject LoadComponent(const std::filesystem::path& path);

}  // namespace zupm::test
