/// Finds what is odd in a document.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "notices/IniSettings.h"
#include "notices/Notices.h"
#include "notices/SeenNames.h"
#include "xml/MarkupReader.h"
#include "xml/PositionCounter.h"

namespace zupm {

/// Reads the text of a policy file tag by tag, by the rules of loading: the first of two entries with one key counts,
/// sections of one name are one section, an element's name does not matter below a product or a task.
///
/// Lifetime    One call of Find. The text outlives it.
/// Errors      Throws std::bad_alloc.
/// Invariants  Only the outermost levels can hold something of interest: only their places are kept, and the number of
///             the levels further in.
class NoticeFinder {
public:
    /// `text` is a well-formed document, valid UTF-8, that fits in 32 bits.
    explicit NoticeFinder(std::string_view text) : m_text(text), m_reader(text), m_positions(text) {}
    NoticeFinder(const NoticeFinder&) = delete;
    NoticeFinder& operator=(const NoticeFinder&) = delete;
    ~NoticeFinder() = default;

    [[nodiscard]] Notices Find();

private:
    enum class Place : std::uint8_t {
        Document,
        Root,
        PolicyRoot,
        PolicyGroup,
        Policy,
        Product,
        TaskRoot,
        TaskGroup,
        Task,
        Section,
        Setting,
        Other,
    };

    /// A section or setting that counts. The texts of names are kept when a notice first needs them.
    struct Named {
        std::string_view name;
        std::optional<NoticeText> kept;
    };

    void Open(const AdvXMLParser::Tag& tag);
    void Close(const AdvXMLParser::Tag& tag);
    void CloseSetting(std::uint32_t valueEnd);

    [[nodiscard]] Place PlaceOf(std::string_view tag);
    [[nodiscard]] Place OpenRootChild(std::string_view tag);
    [[nodiscard]] Place OpenPolicy(std::string_view tag);
    [[nodiscard]] Place OpenProduct(std::string_view tag);
    [[nodiscard]] Place OpenTaskGroup(std::string_view tag);
    [[nodiscard]] Place OpenTask(std::string_view tag);
    [[nodiscard]] Place OpenSection(std::string_view tag);
    [[nodiscard]] Place OpenSetting(std::string_view tag);
    /// Begins a product or the group of a task; without IDs nothing of the kind.
    void OpenEntry(std::string_view softwareId, std::string_view taskId);
    /// What an export writes for a field of the open task, by its number.
    [[nodiscard]] std::string FieldValue(std::size_t number);

    /// An attribute's meaning: a view into the text or into `decoded`; nothing when the tag does not have it.
    [[nodiscard]] static std::optional<std::string_view> Attribute(std::string_view tag, std::string_view name,
                                                                   std::deque<std::string>& decoded);
    void RequireNumber(std::string_view tag, std::string_view name);

    [[nodiscard]] AdvXMLParser::Position PositionOf(std::string_view tag);
    void Notice(NoticeKind kind, std::string_view tag, const Notices::Subjects& subjects = {});
    /// The number of the open product or task among the notices' entries; 0 outside of one.
    [[nodiscard]] std::uint32_t CurrentEntry();
    [[nodiscard]] NoticeText KeptName(Named& named);

    std::string_view m_text;
    AdvXMLParser::MarkupReader m_reader;
    AdvXMLParser::PositionCounter m_positions;
    Notices m_notices;

    /// From the document down to a setting: eight levels. Level 0 is the document itself.
    std::array<Place, 9> m_places{Place::Document};
    std::size_t m_depth = 0;
    AdvXMLParser::Position m_root;  ///< of the document element
    bool m_hasRoots = false;

    std::string_view m_softwareId;  ///< of the open product or group
    std::string_view m_taskId;      ///< of the open group
    std::uint32_t m_entry = 0;      ///< the notices' number of it; 0 when no notice was about it so far
    std::string_view m_group;       ///< the tag of the open group
    bool m_groupHasTask = false;
    std::string_view m_task;  ///< the tag of the open task; empty outside of tasks

    std::uint32_t m_section = 0;  ///< the number of the open section
    std::string_view m_setting;   ///< the tag of the open setting
    std::uint32_t m_valueAt = 0;  ///< where the rest of its value begins
    std::string m_value;          ///< its value before that

    std::deque<std::string> m_ids;    ///< those that are no part of the text
    std::deque<std::string> m_texts;  ///< likewise the names and values of the open entry
    SeenNames m_policyIds;
    SeenNames m_taskSoftwareIds;
    SeenNames m_taskIds;
    SeenNames m_sectionNames;
    SeenNames m_settingNames;
    std::vector<Named> m_sections;  ///< of the open entry, by number; settings, too
    std::vector<Named> m_settings;
    IniSettings m_iniSettings;
};

}  // namespace zupm
