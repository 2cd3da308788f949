/// The settings of a task under the names that an INI file has for them.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/client/contents/RecordIndex.h"

namespace zupm::tool {

/// Finds the settings of a task that overwrite one another in an INI file: the file takes their names for one, and
/// their values differ.
///
/// Lifetime  Looks at the contents that a builder fills, and keeps no text of its own.
/// Cost      Each name is folded when it comes and once more when it meets an earlier one, which is about as long.
class IniNames {
public:
    /// What the export writes first: a setting, or a field of the task (by its place in kIniFields).
    struct First {
        Warning::Kind kind;
        std::uint32_t number;
    };

    explicit IniNames(const FileContents& contents) : m_contents(contents) {}

    /// The last task of the contents is open; what is known of the one before it is forgotten.
    void OpenTask();
    /// The settings that follow belong to this section.
    void OpenSection(std::uint32_t section);
    /// Takes in a setting whose value is complete. What it meets with another value; nothing when it meets nothing.
    [[nodiscard]] std::optional<First> Add(std::uint32_t setting);

private:
    /// A section's name, or a setting's name in a section.
    struct Name {
        Piece text;             ///< without blanks at its ends
        std::uint32_t section;  ///< number of the section's Name; kNone for a section
        std::uint32_t setting;  ///< kNone for a section
    };

    /// The number of the first Name that is one with this one; the new Name's when there is none.
    [[nodiscard]] std::uint32_t FindOrAdd(Piece text, std::string_view folded, std::uint32_t section,
                                          std::uint32_t setting);
    /// The field of that name; nothing when it is none.
    [[nodiscard]] static std::optional<First> FindField(std::string_view folded);
    /// What the export writes for the field.
    [[nodiscard]] std::string_view FieldValue(std::uint32_t number) const;

    const FileContents& m_contents;
    std::deque<Name> m_names;
    RecordIndex m_index;
    std::uint32_t m_section = kNone;  ///< number of the open section's Name; kNone when the file refuses the section
    std::string m_priority;           ///< the task's, as an INI file gets it
    bool m_hasFields = false;         ///< the fields are in the open section, too
};

}  // namespace zupm::tool
