/// A module that the runtime loaded for a class the registry names.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "zuPolicyManager/zucomrt.h"

namespace zupm::runtime {

/// One loaded module and its two entry points.
///
/// Lifetime  Shared: whoever calls into the module holds it; the last holder unloads it.
/// Threads   Any; nothing changes after loading. Never load or unload under a lock: the module's own start and end call
///           back into the runtime.
/// Errors    Results; std::bad_alloc passes.
class LoadedModule {
public:
    /// Loads the module at a full path (UTF-8). CO_E_DLLNOTFOUND (not absolute, or not to be loaded), CO_E_ERRORINDLL
    /// (no DllGetClassObject); `module` is null then.
    [[nodiscard]] static HRESULT Load(const std::string& path, std::shared_ptr<const LoadedModule>& module);
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    [[nodiscard]] const std::string& Path() const { return m_path; }
    /// Where the module lies in memory: the same for every function of it (see BaseOf).
    [[nodiscard]] const void* Base() const { return m_base; }
    [[nodiscard]] ZuGetClassObject ClassObjects() const { return m_getClassObject; }
    /// Asks the module; one without that function stays loaded.
    [[nodiscard]] bool CanUnloadNow() const;

private:
    using CanUnload = HRESULT (*)();

    LoadedModule(std::string path, void* handle) : m_path(std::move(path)), m_handle(handle) {}

    std::string m_path;
    void* m_handle;
    const void* m_base = nullptr;
    ZuGetClassObject m_getClassObject = nullptr;
    CanUnload m_canUnload = nullptr;
};

/// The base of the module that holds a function; null when the system does not know.
[[nodiscard]] const void* BaseOf(ZuGetClassObject function) noexcept;

}  // namespace zupm::runtime
