/// The settings of a task under the names that an INI file has for them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "notices/SeenNames.h"

namespace zupm {

/// A setting as an export writes it; views into the document or into memory of its reader.
struct IniSetting {
    std::string_view section;
    std::string_view name;
    std::string_view value;
    std::uint32_t sectionNumber;  ///< the caller's, as is the other one
    std::uint32_t number;
};

/// The fields that the export of a task writes into a section of its own before the settings, by their names there.
inline constexpr std::array<std::string_view, 8> kIniFields = {
    "TaskName", "Platforms", "TaskPriority", "SoftwareName", "TaskID", "CreatorSoftwareID", "TaskType", "TaskVersion"};

/// Finds the settings of a task that overwrite one another, or a field of the task, in an INI file, which takes their
/// names for one.
///
/// Lifetime  What settings refer to outlives it, or the next Open.
/// Errors    Add throws std::bad_alloc.
class IniSettings {
public:
    /// What the export writes first.
    struct First {
        const IniSetting* setting;  ///< its value differs; null for a field
        std::size_t field = 0;      ///< which of kIniFields; its value may be the same
    };

    IniSettings();

    /// A task begins; the one before is forgotten.
    void Open() noexcept;
    /// Takes in a setting. What it meets; nothing when it meets nothing.
    [[nodiscard]] std::optional<First> Add(const IniSetting& setting);

private:
    [[nodiscard]] std::string_view Fold(std::string_view name);
    /// The place among the fields; their number when it is none.
    [[nodiscard]] std::size_t FindField(std::string_view folded) const noexcept;

    const std::string m_fieldSection;
    std::array<std::string, kIniFields.size()> m_fieldNames;
    SeenNames m_sections;
    SeenNames m_names;
    std::deque<IniSetting> m_settings;  ///< the first of each name, by its number
    std::deque<std::string> m_folded;
    std::string_view m_section;  ///< the last setting's, and what Add found out about it
    std::uint32_t m_sectionNumber = 0;
    bool m_isFieldSection = false;
    bool m_isSectionKnown = false;
};

}  // namespace zupm
