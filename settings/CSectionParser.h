/// The section cursor.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

#include "platform/CriticalSection.h"
#include "settings/CXMLDataObject.h"
#include "settings/NameList.h"
#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The guarded front of one settings store.
///
/// Lifetime  Owns the store, and makes a new one for every initialisation. The container's document belongs to the
///           caller and must outlive the cursor.
/// Threads   One lock serialises every call into the store except the INI export, which the owner must not run
///           together with writes.
/// Errors    CursorNotInitialised, or the store's codes. Logs nothing; macro expansion may throw std::bad_alloc.
class CSectionParser {
public:
    /// `ownerLink` goes to every store; nobody reads it.
    CSectionParser(const AdvXMLParser::Element& container, const void* ownerLink) noexcept;
    virtual ~CSectionParser();
    CSectionParser(const CSectionParser&) = delete;
    CSectionParser& operator=(const CSectionParser&) = delete;

    /// A new cursor, not initialised; null when memory ran out.
    [[nodiscard]] static std::unique_ptr<CSectionParser> Create(const AdvXMLParser::Element& container,
                                                                const void* ownerLink) noexcept;

    /// Opens a new store over the container; does nothing when initialised. AllocationFailed, the store's codes.
    [[nodiscard]] result::Code Initialize() noexcept;
    /// Drops the store. Always Success.
    result::Code Deinitialize() noexcept;

    /// Gives a setting's value with its macros expanded; `value` is untouched on failure.
    [[nodiscard]] result::Code GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string& value);
    /// Gives a setting's value as it is stored; `value` is untouched on failure.
    [[nodiscard]] result::Code GetStoredValue(std::u16string_view section, std::u16string_view setting,
                                              std::u16string& value) noexcept;
    /// The names of the sections, and of the settings of one, in the order of the document; `names` is untouched on
    /// failure.
    [[nodiscard]] result::Code GetSectionNames(NameList& names) noexcept;
    [[nodiscard]] result::Code GetSettingNames(std::u16string_view section, NameList& names) noexcept;
    /// Stores a value as it is; creates a missing section and setting.
    [[nodiscard]] result::Code SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string_view value) noexcept;
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view setting) noexcept;

    /// Writes all settings, raw. Needs a store, not the initialised state: CursorNotInitialised without one.
    [[nodiscard]] result::Code WriteAllSettingsToIniFile(std::u16string_view path, CIniNames written = {}) noexcept;

private:
    void DropStore() noexcept ZUPM_REQUIRES(m_lock);

    std::atomic<bool> m_initialised = false;
    std::unique_ptr<CXMLDataObject> m_store ZUPM_GUARDED_BY(m_lock);
    CCriticalSection m_lock;
    AdvXMLParser::Element m_container;
    // Given: see docs/given-oddities.md, "owner link".
    const void* m_ownerLink;
};

}  // namespace zupm
