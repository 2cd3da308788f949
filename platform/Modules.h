/// Modules of the operating system: where this one lies, and resource modules loaded as data.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zupm {

/// A loaded resource module: texts by number. No code of it ever runs.
///
/// Lifetime  Destroying it frees the module.
/// Threads   FindString may be called from any thread.
class ResourceModule {
public:
    virtual ~ResourceModule() = default;
    ResourceModule(const ResourceModule&) = delete;
    ResourceModule& operator=(const ResourceModule&) = delete;

    /// The text of a number; nothing when the module has none.
    [[nodiscard]] virtual std::optional<std::u16string> FindString(std::uint32_t id) const = 0;

protected:
    ResourceModule() = default;
};

/// Loads the resource module at a full path as data; null when it is missing or is no resource module. Natively such a
/// module is a UTF-8 text file with one `number<TAB>text` a line. Throws std::bad_alloc.
[[nodiscard]] std::shared_ptr<const ResourceModule> LoadResourceModule(std::u16string_view fullPath);

/// Full path of the module that holds this code, and the folder it lies in (without a separator at the end); empty when
/// the system does not know.
[[nodiscard]] std::u16string OwnModulePath();
[[nodiscard]] std::u16string OwnModuleFolder();

/// The folder inside the module's own that may hold its resource modules too: natively libraries of all packages share
/// a folder. Empty on Windows, where every program has a folder of its own.
[[nodiscard]] std::u16string_view PackageFolder() noexcept;

/// The user's default language identifier: 0x0409 for American English. Natively read from LC_ALL, LC_MESSAGES, LANG.
[[nodiscard]] std::uint16_t GetUserDefaultLangID() noexcept;

}  // namespace zupm
