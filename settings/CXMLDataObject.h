/// The settings store.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/CriticalSection.h"
#include "settings/CElementMap.h"
#include "settings/CIniNames.h"
#include "settings/NameIndex.h"
#include "settings/NameList.h"
#include "xml/Node.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// Sections of named settings over the children of one element.
///
/// Reading ignores element names: every child with a "name" is a section, and every child of a section with a "name" is
/// a setting. Sections of one name are merged; of settings of one name the first counts. Writing makes "Section" and
/// "Setting" elements. Values are not cached: a value is the text of its element.
///
/// Lifetime   The document belongs to the caller and must outlive the store.
/// Threads    Initialize and Deinitialize take the store's lock. All other operations rely on the cursor's lock.
/// Errors     Result codes. Every operation catches all exceptions, logs them and gives Unexpected.
/// Invariants The indexes mirror the document. While every name is unique, they follow each element that is added or
///            removed. Otherwise each such change rebuilds them, which logs the duplicates again. When an update fails,
///            the next operation rebuilds the indexes, and gives Unexpected or AllocationFailed as long as that fails:
///            with half an index, settings would seem lost and be written twice.
class CXMLDataObject {
public:
    /// `ownerLink` is kept; nobody reads it.
    CXMLDataObject(const AdvXMLParser::Element& container, const void* ownerLink) noexcept;
    virtual ~CXMLDataObject();
    CXMLDataObject(const CXMLDataObject&) = delete;
    CXMLDataObject& operator=(const CXMLDataObject&) = delete;

    /// Builds the indexes; does nothing when they are built. AllocationFailed, Unexpected.
    [[nodiscard]] result::Code Initialize() noexcept;
    /// Empties the indexes. Always Success.
    result::Code Deinitialize() noexcept;

    /// The element of a setting. Null with SectionNotFound, SettingNotFound or NotCreated in `code`.
    [[nodiscard]] AdvXMLParser::Element GetSetting(std::u16string_view section, std::u16string_view setting,
                                                   result::Code& code) noexcept;

    /// The codes of GetSetting; `value` is untouched on failure.
    [[nodiscard]] result::Code GetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string& value) noexcept;

    /// The sections, and the settings of one, that GetSetting finds, in the order of the document. NotCreated and
    /// SectionNotFound as GetSetting gives them; `names` is untouched on failure.
    [[nodiscard]] result::Code GetSectionNames(NameList& names) noexcept;
    [[nodiscard]] result::Code GetSettingNames(std::u16string_view section, NameList& names) noexcept;

    /// Replaces a setting's content by a text. When the setting or its section is missing: creates them if `create` is
    /// not 0, otherwise gives SettingNotFound. Unexpected, with the document as it was, when XML cannot hold the
    /// value or a name; the codes of AddSetting.
    [[nodiscard]] result::Code SetSettingValue(std::u16string_view section, std::u16string_view setting,
                                               std::u16string_view value, std::int32_t create) noexcept;

    /// Appends a setting to the first section of that name, which it creates if it is missing. The caller has checked
    /// that the setting does not exist and that XML can hold the value. Null with NotCreated or SectionStillMissing in
    /// `code`; null with Unexpected, and the document as it was, when XML cannot hold a name.
    [[nodiscard]] AdvXMLParser::Element AddSetting(std::u16string_view section, std::u16string_view setting,
                                                   result::Code& code, std::u16string_view value = {}) noexcept;

    /// Deletes a setting's element; its section stays. The codes of GetSetting.
    [[nodiscard]] result::Code RemoveSetting(std::u16string_view section, std::u16string_view setting) noexcept;

    /// Deinitialize, then the result of Initialize.
    [[nodiscard]] result::Code Reinitialize() noexcept;

    /// Writes every setting of the indexes, raw, in code-unit order. Leaves out what the file refuses. When an INI file
    /// takes a setting for one that was written before, or for one of `written`, it replaces that one; if the values
    /// differ, a line of level 8 is logged.
    [[nodiscard]] result::Code WriteAllSettingsToIniFile(std::u16string_view path, CIniNames written = {}) noexcept;

    [[nodiscard]] const void* OwnerLink() const noexcept { return m_ownerLink; }

protected:
    using Index = NameIndex<std::unique_ptr<CElementMap>>;

    /// Open to tests, which put entries there that no document leads to.
    [[nodiscard]] Index& Sections() noexcept { return m_sections; }

private:
    /// The settings of a section in indexes that are up to date. Null with SectionNotFound or NotCreated in `code`,
    /// which is untouched on success.
    [[nodiscard]] const CElementMap::Index* FindSection(std::u16string_view section, result::Code& code) const noexcept;
    /// GetSetting over indexes that are up to date; `code` is untouched on success.
    [[nodiscard]] AdvXMLParser::Element Find(std::u16string_view section, std::u16string_view setting,
                                             result::Code& code) const noexcept;
    [[nodiscard]] result::Code BuildIndexes();
    [[nodiscard]] result::Code IndexSection(const AdvXMLParser::Element& section);
    void IndexSettings(const AdvXMLParser::Element& section, std::u16string_view sectionName, CElementMap& settings);
    [[nodiscard]] result::Code AppendSetting(std::u16string_view section, std::u16string_view setting,
                                             std::u16string_view value, AdvXMLParser::Element& added);
    /// True when every element with a name has an entry of its own.
    [[nodiscard]] bool HoldsEveryElement() noexcept;
    /// Brings the indexes up to date by `update`, or rebuilds them when more than one entry might have to change. The
    /// codes of Initialize.
    template <class Update>
    [[nodiscard]] result::Code Follow(Update update) noexcept;
    /// Rebuilds the indexes if that has failed before. The codes of Initialize.
    [[nodiscard]] result::Code Refresh() noexcept;

    Index m_sections;
    AdvXMLParser::Element m_container;
    bool m_initialised ZUPM_GUARDED_BY(m_lock) = false;
    bool m_hasDuplicates = false;  ///< elements were left out because of their names
    bool m_isStale = false;        ///< bringing the indexes up to date failed
    // Given: see docs/given-oddities.md, "owner link".
    const void* m_ownerLink;
    CCriticalSection m_lock;
};

}  // namespace zupm
