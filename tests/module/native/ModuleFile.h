/// The module as a file: loaded into the test program, which has no part of the component in itself.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/Bstr.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// Where the build put the module: beside this program.
[[nodiscard]] std::filesystem::path ModulePath();

/// The module, loaded from a path for as long as this lives.
class ModuleFile {
public:
    explicit ModuleFile(const std::filesystem::path& path = ModulePath());
    ~ModuleFile();
    ModuleFile(const ModuleFile&) = delete;
    ModuleFile& operator=(const ModuleFile&) = delete;

    /// Calls one of the entry points without arguments.
    [[nodiscard]] HRESULT Call(const char* entryPoint) const;
    [[nodiscard]] HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) const;

private:
    void* m_handle;
};

/// A registry of the test's own, for as long as this lives.
class OwnRegistry {
public:
    OwnRegistry();
    ~OwnRegistry();
    OwnRegistry(const OwnRegistry&) = delete;
    OwnRegistry& operator=(const OwnRegistry&) = delete;

    /// The registry's text; empty when there is none.
    [[nodiscard]] std::string Text() const;
    /// A value, as UTF-8; "(none)" when there is none. An empty name is the default value.
    [[nodiscard]] static std::string Value(std::u16string_view key, std::u16string_view name = {});

private:
    TempFolder m_folder;
};

}  // namespace zupm::test
