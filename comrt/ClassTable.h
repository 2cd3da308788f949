/// The classes that this process can create: those of modules that announced themselves, and the modules that the
/// runtime loaded.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "comrt/LoadedModule.h"
#include "comrt/Lock.h"
#include "platform/ThreadAnnotations.h"

namespace zupm::runtime {

/// What a module announced.
struct Announcement {
    const ZuClassEntry* entries;
    std::size_t count;
    ZuGetClassObject get;
    const void* base;
};

/// A module's source of class objects, held so that the module stays while it is called.
struct ClassSource {
    ZuGetClassObject get = nullptr;
    std::shared_ptr<const void> hold;
};

/// The process's table of announcements and loaded modules.
///
/// Lifetime  One, for the life of the process.
/// Threads   Any. Its lock is never held while a module is called, loaded or unloaded.
/// Errors    std::bad_alloc passes, with the table as it was.
class ClassTable {
public:
    void Announce(const Announcement& announcement);
    void Withdraw(ZuGetClassObject get);

    /// The announced module that has the class; `get` is null when there is none.
    [[nodiscard]] ClassSource FindAnnounced(REFCLSID clsid);
    /// The class whose announced ProgID this is, with or without the version at its end.
    [[nodiscard]] std::optional<CLSID> FindProgId(std::u16string_view progId);

    /// The loaded module of that path; `get` is null when there is none.
    [[nodiscard]] ClassSource FindLoaded(const std::string& path);
    /// Adds a module; if the table already has one of the same path, that one stays and is used.
    [[nodiscard]] ClassSource Add(std::shared_ptr<const LoadedModule> module);

    /// Unloads the modules that report that they can be unloaded, unless somebody was given one since.
    void FreeUnused();

private:
    using Module = std::shared_ptr<const LoadedModule>;

    [[nodiscard]] ClassSource SourceOf(const Module& module) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] ClassSource FindPath(const std::string& path) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] bool IsHeld(const Module& module) const ZUPM_REQUIRES(m_lock);
    /// Takes a module out of the table, unless it is in use or anything was handed out since `generation`.
    void Remove(const Module& module, std::uint64_t generation);

    Lock m_lock;
    std::vector<std::shared_ptr<const Announcement>> m_announced ZUPM_GUARDED_BY(m_lock);
    std::vector<Module> m_loaded ZUPM_GUARDED_BY(m_lock);
    /// Counts what was handed out.
    std::uint64_t m_generation ZUPM_GUARDED_BY(m_lock) = 0;
};

/// The process's one table; never destroyed, because modules withdraw while the process ends.
[[nodiscard]] ClassTable& Classes() noexcept;

}  // namespace zupm::runtime
