/// Builds records from the start tags, texts and end tags of a policy file.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "model/FileContents.h"
#include "xml/Attributes.h"

namespace zupm::tool {

/// Where a start tag stands; both count from 1.
struct Position {
    std::uint64_t line;
    std::uint64_t column;
};

/// Follows the element tree of a policy file and keeps what the component would find in it.
///
/// Invariants  The stack has one place for each open element. A place of kOther holds nothing of interest, nor does
///             anything below it.
class ContentsBuilder {
public:
    void Open(std::string_view name, const Attributes& attributes, Position position);
    void Close();
    void Text(std::string_view text);

    /// The records; the builder is empty afterwards.
    [[nodiscard]] FileContents Take() { return std::move(m_contents); }

private:
    enum class Place : std::uint8_t {
        Root,
        PolicyRoot,
        PolicyGroup,
        Policy,
        Entry,  // a product or a task: the container of sections
        TaskRoot,
        TaskGroup,
        Section,
        Setting,
        Other,
    };

    [[nodiscard]] Place PlaceOf(std::string_view name, const Attributes& attributes, Position position);
    [[nodiscard]] Place OpenPolicy(const Attributes& attributes);
    [[nodiscard]] Place OpenProduct(std::string_view name, const Attributes& attributes, Position position);
    [[nodiscard]] Place OpenTaskGroup(const Attributes& attributes);
    [[nodiscard]] Place OpenTask(const Attributes& attributes, Position position);
    [[nodiscard]] Place OpenSection(const Attributes& attributes, Position position);
    [[nodiscard]] Place OpenSetting(const Attributes& attributes, Position position);
    void StartEntry(std::vector<Section>& sections);
    void Report(Position position, std::string message);

    FileContents m_contents;
    std::vector<Place> m_stack;
    std::string m_policyVersion;
    Task m_group;

    // The entry and the section that are open. Records lie in vectors, so the section is kept by number.
    std::vector<Section>* m_sections = nullptr;
    std::size_t m_section = 0;
    std::unordered_map<std::string, std::size_t> m_sectionNumbers;
    std::vector<std::unordered_set<std::string>> m_settingNames;

    std::unordered_set<std::string> m_softwareIds;
    std::set<std::pair<std::string, std::string>> m_taskIds;
};

}  // namespace zupm::tool
