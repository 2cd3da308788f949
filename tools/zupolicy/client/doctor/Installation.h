/// What the operating system knows about the component: its files and its registration.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zupm::tool {

/// The module's file name, different on each target.
extern const char* const kModuleFile;
/// Whether the tool uses the registered module when it has none of its own.
extern const bool kUsesRegisteredModule;
inline constexpr const char* kResourceModule = "AgentRes.dll";
/// The texts that the component takes from its resource module.
inline constexpr std::uint32_t kResourceTexts[] = {147, 149};

/// Where the tool's own module is.
struct ModulePlace {
    std::filesystem::path path;                   ///< empty: in none of the folders
    std::vector<std::filesystem::path> searched;  ///< the folders, in this order
};

/// A module that was loaded.
struct ModuleEntry {
    using GetClassObject = HRESULT (*)(REFCLSID, REFIID, void**);

    GetClassObject getClassObject = nullptr;
    std::string problem;  ///< why it is null
};

/// What registration says about a class.
struct RegisteredClass {
    std::filesystem::path module;  ///< empty: not registered
    std::string problem;           ///< why registration cannot be read
};

/// This program's file.
[[nodiscard]] std::filesystem::path OwnProgram();
/// The file that the tool takes its objects from; loads nothing.
[[nodiscard]] ModulePlace FindOwnModule();
/// Loads a module for the rest of the process's life.
[[nodiscard]] ModuleEntry LoadModule(const std::filesystem::path& path);
/// The folders in which a module looks for its texts.
[[nodiscard]] std::vector<std::filesystem::path> ResourceFolders(const std::filesystem::path& module);
/// What is wrong with a resource module; empty when it is whole and has the component's texts.
[[nodiscard]] std::string ProblemOfResourceModule(const std::filesystem::path& path);

/// The registration of a class, for the user who runs the tool.
[[nodiscard]] RegisteredClass ReadRegistration(REFCLSID clsid);
/// Where registrations are kept: a file's path, or the name of a key.
[[nodiscard]] std::string RegistryName();
/// The command that registers a module.
[[nodiscard]] std::string HowToRegister(const std::filesystem::path& module);

/// Whether programs find the module without registration: one sentence, empty when this target has no such way.
[[nodiscard]] std::string RegistrationFreeUse(const std::filesystem::path& module);

}  // namespace zupm::tool
