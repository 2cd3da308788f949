#include "xml/RecordBuilder.h"

#include <utility>

namespace AdvXMLParser {

RecordBuilder::RecordBuilder(std::uint32_t textSize) : m_textSize(textSize)
{
    m_records.Reserve(1);
    m_open = PlaceOf(m_records.Acquire());
}

void RecordBuilder::Take(std::span<const Tag> tags)
{
    m_records.Reserve(tags.size());
    for (const Tag& tag : tags) {
        switch (tag.kind) {
            case TagKind::Start:
                m_open = Add(tag);
                m_lastChild = {};
                break;
            case TagKind::Empty:
                m_lastChild = Add(tag);
                break;
            case TagKind::End:
                Close(tag.begin);
                break;
        }
        m_read = tag.end;
    }
}

RecordBuilder::Place RecordBuilder::Add(const Tag& tag) noexcept
{
    const Place added = PlaceOf(m_records.Acquire());
    const bool isFirst = m_lastChild.record == nullptr;
    (isFirst ? m_open.record->firstChild : m_lastChild.record->next) = added.index;
    added.record->before = m_read;
    added.record->content = tag.end;
    added.record->tail = tag.end;
    added.record->end = tag.end;
    added.record->parent = m_open.index;
    added.record->previous = isFirst ? added.index : m_lastChild.index;
    return added;
}

/// Closes the innermost element and the list of its children.
void RecordBuilder::Close(std::uint32_t end) noexcept
{
    ElementRecord& record = *m_open.record;
    record.tail = m_read;
    record.end = end;
    if (m_lastChild.record != nullptr) {
        m_records[record.firstChild].previous = m_lastChild.index;
    }
    m_lastChild = m_open;
    m_open = PlaceOf(record.parent);
}

RecordStore RecordBuilder::Finish() noexcept
{
    Close(m_textSize);
    return std::move(m_records);
}

}  // namespace AdvXMLParser
