/// The element records of a whole text.
#pragma once

#include <cstdint>
#include <span>

#include "xml/RecordLinker.h"
#include "xml/RecordStore.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

/// Makes the records of a document from its tags, as RecordLinker does; record 0 is the document's.
class RecordBuilder final : public TagSink {
public:
    explicit RecordBuilder(std::uint32_t textSize);

    void Take(std::span<const Tag> tags) override { m_linker.Take(tags); }

    /// The records so far, and the innermost open element among them; 0 when there is none.
    [[nodiscard]] const RecordStore& Records() const noexcept { return m_records; }
    [[nodiscard]] std::uint32_t Innermost() const noexcept { return m_linker.Innermost(); }

    /// The records of a text that is well-formed. Call once, after all tags.
    [[nodiscard]] RecordStore Finish() noexcept;

private:
    RecordStore m_records;
    RecordLinker m_linker;
    std::uint32_t m_textSize;
};

}  // namespace AdvXMLParser
