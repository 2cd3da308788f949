/// Builds records from the tags and texts of a policy file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/client/contents/RecordIndex.h"
#include "tools/zupolicy/client/contents/TagReader.h"

namespace zupm::tool {

/// Follows the element tree of a policy file and keeps what the component would find in it.
///
/// Invariants  Only the outermost levels can hold something of interest, so only their places are kept, and the number
///             of the levels further in.
class ContentsBuilder {
public:
    /// `document` is where the markup comes from; it must outlive the builder.
    explicit ContentsBuilder(std::string_view document);
    ~ContentsBuilder() = default;
    ContentsBuilder(const ContentsBuilder&) = delete;
    ContentsBuilder& operator=(const ContentsBuilder&) = delete;

    void Add(const Markup& markup);
    /// The records, once everything was added; the builder is empty afterwards.
    [[nodiscard]] FileContents Take();

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

    void Open(const Markup& tag);
    void Close();
    void Text(const Markup& markup);

    [[nodiscard]] Place PlaceOf(const Markup& tag);
    [[nodiscard]] Place OpenRootChild(const Markup& tag);
    [[nodiscard]] Place OpenPolicyGroup(const Markup& tag);
    [[nodiscard]] Place OpenPolicy(const Markup& tag);
    [[nodiscard]] Place OpenProduct(const Markup& tag);
    [[nodiscard]] Place OpenTaskGroup(const Markup& tag);
    [[nodiscard]] Place OpenTask(const Markup& tag);
    [[nodiscard]] Place OpenSection(const Markup& tag);
    [[nodiscard]] Place OpenSetting(const Markup& tag);

    /// Whether a group before this one has a task of the same key.
    [[nodiscard]] bool HasTaskOfGroup() const;
    [[nodiscard]] std::uint32_t KeyOfGroup() const;

    /// Where the start tag begins.
    [[nodiscard]] Offset OffsetOf(const Markup& tag) const;
    [[nodiscard]] Piece Keep(std::string_view text);
    /// An attribute's value among the texts; missing when the tag does not have it.
    [[nodiscard]] Piece KeepAttribute(const Markup& tag, std::string_view name);

    std::string_view m_document;
    FileContents m_contents;

    /// From the document down to a setting: eight levels. Level 0 is the document itself.
    std::array<Place, 9> m_places{Place::Document};
    std::size_t m_depth = 0;

    Piece m_policyVersion;
    Task m_group;
    bool m_isNewGroup = false;    ///< no task has the group's key so far
    std::uint32_t m_entry = 0;    ///< counts policies and tasks
    std::uint32_t m_section = 0;  ///< the section that is open

    RecordIndex m_policyKeys;
    RecordIndex m_taskKeys;
    RecordIndex m_sectionKeys;
    RecordIndex m_settingKeys;
};

}  // namespace zupm::tool
