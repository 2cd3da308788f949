#include "comrt/ClassTable.h"

#include <algorithm>

#include "text/AsciiCase.h"

namespace zupm::runtime {
namespace {

/// Keeps the table's destructor from running.
union TableStorage {
    constexpr TableStorage() noexcept : table() {}
    TableStorage(const TableStorage&) = delete;
    TableStorage& operator=(const TableStorage&) = delete;
    ~TableStorage() {}  // NOLINT(modernize-use-equals-default): a defaulted one would be deleted

    ClassTable table;
};

constinit TableStorage g_storage;

bool HasClass(const Announcement& announcement, REFCLSID clsid)
{
    return std::any_of(announcement.entries, announcement.entries + announcement.count,
                       [&](const ZuClassEntry& entry) { return entry.clsid == clsid; });
}

/// "Name.Class" of "Name.Class.1"; the whole text when no number ends it.
std::u16string_view WithoutVersion(std::u16string_view progId)
{
    const std::size_t dot = progId.rfind(u'.');
    const bool versioned = dot != std::u16string_view::npos && dot + 1 < progId.size() &&
                           progId.find_first_not_of(u"0123456789", dot + 1) == std::u16string_view::npos;
    return versioned ? progId.substr(0, dot) : progId;
}

bool IsProgId(const ZuClassEntry& entry, std::u16string_view asked)
{
    if (entry.progId == nullptr) {
        return false;
    }
    const std::u16string_view own(entry.progId);
    return EqualsIgnoringAsciiCase(own, asked) || EqualsIgnoringAsciiCase(WithoutVersion(own), asked);
}

}  // namespace

ClassTable& Classes() noexcept
{
    return g_storage.table;
}

void ClassTable::Announce(const Announcement& announcement)
{
    auto added = std::make_shared<const Announcement>(announcement);
    const ScopedLock lock(m_lock);
    const bool known = std::any_of(m_announced.begin(), m_announced.end(),
                                   [&](const auto& present) { return present->get == announcement.get; });
    if (!known) {
        m_announced.push_back(std::move(added));
    }
}

void ClassTable::Withdraw(ZuGetClassObject get)
{
    const ScopedLock lock(m_lock);
    std::erase_if(m_announced, [&](const auto& present) { return present->get == get; });
}

ClassSource ClassTable::FindAnnounced(REFCLSID clsid)
{
    const ScopedLock lock(m_lock);
    for (const auto& announcement : m_announced) {
        if (HasClass(*announcement, clsid)) {
            ++m_generation;
            return {announcement->get, announcement};
        }
    }
    return {};
}

std::optional<CLSID> ClassTable::FindProgId(std::u16string_view progId)
{
    const ScopedLock lock(m_lock);
    for (const auto& announcement : m_announced) {
        for (std::size_t i = 0; i < announcement->count; ++i) {
            if (IsProgId(announcement->entries[i], progId)) {
                return announcement->entries[i].clsid;
            }
        }
    }
    return std::nullopt;
}

ClassSource ClassTable::SourceOf(const Module& module)
{
    ++m_generation;
    return {module->ClassObjects(), module};
}

ClassSource ClassTable::FindPath(const std::string& path)
{
    const auto found =
        std::find_if(m_loaded.begin(), m_loaded.end(), [&](const Module& module) { return module->Path() == path; });
    return found == m_loaded.end() ? ClassSource() : SourceOf(*found);
}

ClassSource ClassTable::FindLoaded(const std::string& path)
{
    const ScopedLock lock(m_lock);
    return FindPath(path);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter must outlive the lock
ClassSource ClassTable::Add(std::shared_ptr<const LoadedModule> module)
{
    // The parameter outlives the lock, so a module that is not needed is unloaded after it is left.
    const ScopedLock lock(m_lock);
    ClassSource present = FindPath(module->Path());
    if (present.get != nullptr) {
        return present;
    }
    m_loaded.push_back(module);
    return SourceOf(module);
}

void ClassTable::FreeUnused()
{
    std::vector<Module> candidates;
    {
        const ScopedLock lock(m_lock);
        candidates = m_loaded;
    }
    for (Module& module : candidates) {
        std::uint64_t generation = 0;
        {
            const ScopedLock lock(m_lock);
            generation = m_generation;
        }
        if (module->CanUnloadNow()) {
            Remove(module, generation);
        }
        // The last holder of a removed module: it is unloaded here, outside the lock.
        module.reset();
    }
}

bool ClassTable::IsHeld(const Module& module) const
{
    // The table and FreeUnused hold it themselves.
    constexpr long kOwnHolds = 2;
    return module.use_count() > kOwnHolds ||
           std::any_of(m_announced.begin(), m_announced.end(), [&](const auto& announcement) {
               return announcement->base == module->Base() && announcement.use_count() > 1;
           });
}

void ClassTable::Remove(const Module& module, std::uint64_t generation)
{
    const ScopedLock lock(m_lock);
    if (generation != m_generation || IsHeld(module)) {
        return;
    }
    // Its announcements go with it: between here and the unloading nobody may find them.
    std::erase_if(m_announced, [&](const auto& announcement) { return announcement->base == module->Base(); });
    std::erase(m_loaded, module);
}

}  // namespace zupm::runtime
