/// The element records of a text that the scanner reads.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

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
    /// A record and its index.
    struct Place {
        std::uint32_t index = 0;
        ElementRecord* record = nullptr;
    };

    [[nodiscard]] Place NewPlace() noexcept;
    [[nodiscard]] Place Add(const Tag& tag) noexcept;
    void Close(std::uint32_t end) noexcept;

    RecordStore m_records;
    std::vector<Place> m_open;  ///< the document and the open elements, the innermost last
    Place m_lastChild;          ///< the innermost one's last child so far; without a record when there is none
    std::uint32_t m_read = 0;   ///< after the last tag
    std::uint32_t m_textSize;
};

}  // namespace AdvXMLParser
