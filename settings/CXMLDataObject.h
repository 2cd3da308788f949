/// The settings store.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/CriticalSection.h"
#include "settings/CElementMap.h"
#include "settings/CIniNames.h"
#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// Sections of named settings over the children of one element.
///
/// Reading looks at no element name: every child with a "name" is a section, every child of that with a "name" a
/// setting. Sections of one name are merged, and of settings of one name the first counts. Writing makes "Section" and
/// "Setting" elements. A value is never cached: it is its element's text.
///
/// Lifetime   The document belongs to the caller and must outlive the store.
/// Threads    Initialize and Deinitialize take the store's lock; everything else relies on its caller's (the cursor's).
/// Errors     Result codes. Every operation catches all exceptions, logs them and gives Unexpected.
/// Invariants The indexes mirror the document. While no name occurs twice they follow every new or removed element;
///            otherwise such an element has them rebuilt, which logs the duplicates again. Indexes that could not be
///            brought up to date are rebuilt by the next operation, which gives Unexpected or AllocationFailed until
///            they can be: with half an index, settings would seem lost and be written twice.
class CXMLDataObject {
public:
    /// `ownerLink` is kept and never looked at.
    CXMLDataObject(const AdvXMLParser::Element& container, const void* ownerLink) noexcept;
    virtual ~CXMLDataObject();
    CXMLDataObject(const CXMLDataObject&) = delete;
    CXMLDataObject& operator=(const CXMLDataObject&) = delete;

    /// Builds the indexes; nothing to do when they are built. AllocationFailed, Unexpected.
    [[nodiscard]] result::Code Initialize() noexcept;
    /// Empties the indexes. Always Success.
    result::Code Deinitialize() noexcept;

    /// The element of a setting; null with SectionNotFound, SettingNotFound or NotCreated in `code`.
    [[nodiscard]] AdvXMLParser::Element GetSetting(std::u16string_view section, std::u16string_view setting,
                                                   result::Code& code) noexcept;

    /// The codes of GetSetting; `value` is untouched on failure.
    [[nodiscard]] result::Code GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string& value) noexcept;

    /// Replaces a setting's content by a text. A missing setting, and its section, are created when `create` is not 0,
    /// else the result is SettingNotFound whichever of the two is missing. Unexpected, with the document as it was,
    /// when XML cannot hold the value or a name; the codes of AddSetting.
    [[nodiscard]] result::Code SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string_view value, std::int32_t create) noexcept;

    /// Appends a setting to the first section of that name, which is created when missing. Whether the setting exists
    /// already is the caller's to know. Null with NotCreated or SectionStillMissing in `code`, or with Unexpected and
    /// the document as it was when XML cannot hold a name; the value must be such that it can.
    [[nodiscard]] AdvXMLParser::Element AddSetting(std::u16string_view section, std::u16string_view setting,
                                                   result::Code& code, std::u16string_view value = {}) noexcept;

    /// Deletes a setting's element; its section stays. The codes of GetSetting.
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view setting) noexcept;

    /// Deinitialize, then the result of Initialize.
    [[nodiscard]] result::Code Reinitialize() noexcept;

    /// Writes every setting of the indexes, raw, in code-unit order. What the file refuses is left out. A setting that
    /// an INI file takes for one that was written before, or for one of `written`, replaces it; when it has another
    /// value, with a line of level 8.
    [[nodiscard]] result::Code WriteAllSettingsToIniFile(std::u16string_view path, CIniNames written = {}) noexcept;

    [[nodiscard]] const void* OwnerLink() const noexcept { return m_ownerLink; }

protected:
    using Index = std::map<std::u16string, std::unique_ptr<CElementMap>, std::less<>>;

    /// Open to tests, which put entries there that no document leads to.
    [[nodiscard]] Index& Sections() noexcept { return m_sections; }

private:
    /// GetSetting over indexes that are up to date; `code` is untouched on success.
    [[nodiscard]] AdvXMLParser::Element Find(std::u16string_view section, std::u16string_view setting,
                                             result::Code& code) const noexcept;
    [[nodiscard]] result::Code BuildIndexes();
    [[nodiscard]] result::Code IndexSection(const AdvXMLParser::Element& section);
    void IndexSettings(const AdvXMLParser::Element& section, const std::u16string& sectionName, CElementMap& settings);
    [[nodiscard]] result::Code AppendSetting(std::u16string_view section, std::u16string_view setting,
                                             std::u16string_view value, AdvXMLParser::Element& added);
    /// Whether every element with a name has an entry of its own.
    [[nodiscard]] bool HoldsEveryElement() noexcept;
    /// Lets `update` bring the indexes up to date, or rebuilds them when more than one entry might have to change. The
    /// codes of Initialize.
    template <class Update>
    [[nodiscard]] result::Code Follow(Update update) noexcept;
    /// Rebuilds the indexes if that has failed before. The codes of Initialize.
    [[nodiscard]] result::Code Refresh() noexcept;

    Index m_sections;
    AdvXMLParser::Element m_container;
    bool m_initialised ZUPM_GUARDED_BY(m_lock) = false;
    bool m_hasDuplicates = false;  ///< elements were left out for their names
    bool m_isStale = false;        ///< bringing the indexes up to date failed
    // Given: see docs/given-oddities.md, "owner link".
    const void* m_ownerLink;
    CCriticalSection m_lock;
};

}  // namespace zupm
