/// Copies of the tool and the component, and the registration of the copies.
#pragma once

#include <zuPolicyManager/zuPolicyManager.h>

#include <filesystem>
#include <string>
#include <vector>

#include "ToolProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// File names of this target.
extern const char* const kToolName;
extern const char* const kModuleFileName;
/// The first bytes of a library for a processor of 32 bits.
extern const std::string kHeaderOf32Bits;

/// An installation of its own. It registers for itself and for no other; at its end nothing is registered.
class Installed {
public:
    Installed();
    ~Installed();
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

    [[nodiscard]] const std::filesystem::path& Folder() const { return m_files.Folder(); }
    [[nodiscard]] std::filesystem::path Module() const { return Folder() / kModuleFileName; }
    /// The registry file of this installation; only the native target uses it.
    [[nodiscard]] std::filesystem::path RegistryFile() const { return m_registry.Folder() / "registry"; }
    /// Runs the tool of this installation.
    [[nodiscard]] ToolRun Tool(const std::vector<std::string>& arguments) const;

    void Register() const;
    /// Changes what is registered as a class's module; an empty path removes the registration of the class.
    void SetRegistered(const char* clsid, const std::filesystem::path& module) const;

private:
    TempFolder m_files;
    TempFolder m_registry;
};

}  // namespace zupm::test
