/// What is odd in a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "xml/Position.h"

namespace zupm {

/// In the order of the numbers that clients get, which begin with 1.
enum class NoticeKind : std::uint8_t {
    PolicyAgain = 1,
    TaskAgain,
    SectionAgain,
    SettingAgain,
    NoRoots,
    NotANumber,
    SameInIni,
    SameAsField,
};

/// A text that notices share, by its place among them.
struct NoticeText {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

/// The notices on one document, in document order: a copy of all that is said about it. Small, because a hostile
/// document may be odd a million times: names are kept once and cut when they are very long.
class Notices {
public:
    /// The policy or task that a notice is about; texts are empty when there is none.
    struct Entry {
        NoticeText softwareId;
        NoticeText taskId;
    };
    /// What the sentence names: a section's or setting's name, an attribute and its value, ...
    struct Subjects {
        NoticeText first;
        NoticeText second;
    };

    [[nodiscard]] std::size_t Count() const noexcept { return m_notices.size(); }
    [[nodiscard]] NoticeKind Kind(std::size_t index) const noexcept { return m_notices[index].kind; }
    [[nodiscard]] AdvXMLParser::Position Position(std::size_t index) const noexcept
    {
        return m_notices[index].position;
    }
    [[nodiscard]] std::string_view SoftwareId(std::size_t index) const noexcept;
    [[nodiscard]] std::string_view TaskId(std::size_t index) const noexcept;
    /// One English sentence, without a period.
    [[nodiscard]] std::string Sentence(std::size_t index) const;

    // --- filling -----------------------------------------------------------------------------------------------------

    [[nodiscard]] NoticeText Keep(std::string_view text);
    /// The same for a name that only sentences need.
    [[nodiscard]] NoticeText KeepName(std::string_view name);
    /// The number of an entry, for Add. Entry 0 is none.
    [[nodiscard]] std::uint32_t AddEntry(const Entry& entry);
    void Add(NoticeKind kind, const AdvXMLParser::Position& position, std::uint32_t entry, const Subjects& subjects);
    /// For the one notice about the document as a whole.
    void AddInFront(NoticeKind kind, const AdvXMLParser::Position& position);
    /// For SameInIni and SameAsField: the setting and its section, and those that it meets, or the field's name.
    void AddPair(NoticeKind kind, const AdvXMLParser::Position& position, std::uint32_t entry, const Subjects& later,
                 const Subjects& first);

private:
    struct Notice {
        NoticeKind kind;
        AdvXMLParser::Position position;
        std::uint32_t entry;
        std::uint32_t subjects;  ///< the first that it has
    };

    [[nodiscard]] std::string_view Text(NoticeText text) const noexcept
    {
        return std::string_view(m_texts).substr(text.offset, text.length);
    }
    [[nodiscard]] std::string SettingOf(const Subjects& subjects) const;

    std::string m_texts;
    std::deque<Entry> m_entries{Entry{}};
    std::deque<Subjects> m_subjects;
    std::deque<Notice> m_notices;
};

}  // namespace zupm
