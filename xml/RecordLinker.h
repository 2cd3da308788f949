/// Tags to element records.
#pragma once

#include <cstdint>
#include <span>

#include "xml/RecordStore.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

/// Makes a record for every element whose tags it takes and links the records with each other. An element that ends
/// without having had a child of its own, as the tags report it, holds everything inside it as its tail.
///
/// Lifetime  The store outlives it.
/// Errors    Take throws std::bad_alloc; the records are then still linked with each other.
class RecordLinker {
public:
    /// `shift` is what is added to the offsets of the tags.
    RecordLinker(RecordStore& records, std::uint32_t shift) noexcept
        : m_records(records), m_shift(shift), m_at{.open = {0, &m_outside}, .lastChild = {}, .read = shift}
    {
    }
    RecordLinker(const RecordLinker&) = delete;
    RecordLinker& operator=(const RecordLinker&) = delete;
    ~RecordLinker() = default;

    void Take(std::span<const Tag> tags);

    /// The innermost open element; 0 when there is none.
    [[nodiscard]] std::uint32_t Innermost() const noexcept { return m_at.open.index; }

    /// What surrounds the elements, as a record: the first of them is its first child. `end` is the end of the text.
    [[nodiscard]] const ElementRecord& Finish(std::uint32_t end) noexcept;
    /// The first element; 0 when there is none.
    [[nodiscard]] std::uint32_t First() const noexcept { return m_outside.firstChild; }

private:
    /// Where the links are; a value of its own, so that it can be in registers while records are written.
    struct State {
        RecordPlace open;       ///< the innermost open element, or what surrounds all
        RecordPlace lastChild;  ///< that one's last child so far; without a record when there is none
        std::uint32_t read;     ///< after the last tag
    };

    [[nodiscard]] RecordPlace Add(const Tag& tag, const State& at) noexcept;
    void Close(std::uint32_t end, State& at) noexcept;

    RecordStore& m_records;
    std::uint32_t m_shift;
    ElementRecord m_outside;
    State m_at;
};

}  // namespace AdvXMLParser
