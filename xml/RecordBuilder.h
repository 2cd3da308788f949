/// The element records of a text that the scanner reads.
#pragma once

#include <cstdint>
#include <span>

#include "xml/RecordStore.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

/// Makes a record for every tag that it takes; record 0 is the document's. An element that ends without having had a
/// child of its own, as the scanner reports it, holds everything inside it as its tail.
class RecordBuilder final : public TagSink {
public:
    explicit RecordBuilder(std::uint32_t textSize);

    void Take(std::span<const Tag> tags) override;

    /// The records of an accepted text. Call once, after all tags.
    [[nodiscard]] RecordStore Finish() noexcept;

private:
    std::uint32_t Open(const Tag& tag) noexcept;
    void Close(std::uint32_t tail, std::uint32_t end) noexcept;

    RecordStore m_records;
    std::uint32_t m_open = 0;       ///< the innermost open element
    std::uint32_t m_lastChild = 0;  ///< its last child so far
    std::uint32_t m_read = 0;       ///< after the last tag
    std::uint32_t m_textSize;
};

}  // namespace AdvXMLParser
