#include "xml/RecordBuilder.h"

#include <utility>

namespace AdvXMLParser {

RecordBuilder::RecordBuilder(std::uint32_t textSize) : m_textSize(textSize)
{
    m_records.Reserve(1);
    static_cast<void>(m_records.Acquire());
}

void RecordBuilder::Take(std::span<const Tag> tags)
{
    m_records.Reserve(tags.size());
    for (const Tag& tag : tags) {
        switch (tag.kind) {
            case TagKind::Start:
                m_open = Open(tag);
                m_lastChild = 0;
                break;
            case TagKind::Empty:
                m_lastChild = Open(tag);
                break;
            case TagKind::End:
                Close(m_read, tag.begin);
                break;
        }
        m_read = tag.end;
    }
}

std::uint32_t RecordBuilder::Open(const Tag& tag) noexcept
{
    const std::uint32_t element = m_records.Acquire();
    ElementRecord& record = m_records[element];
    record.before = m_read;
    record.content = tag.end;
    record.tail = tag.end;
    record.end = tag.end;
    record.parent = m_open;
    record.previous = m_lastChild == 0 ? element : m_lastChild;
    (m_lastChild == 0 ? m_records[m_open].firstChild : m_records[m_lastChild].next) = element;
    return element;
}

/// Closes the innermost element and the list of its children.
void RecordBuilder::Close(std::uint32_t tail, std::uint32_t end) noexcept
{
    ElementRecord& record = m_records[m_open];
    record.tail = tail;
    record.end = end;
    if (m_lastChild != 0) {
        m_records[record.firstChild].previous = m_lastChild;
    }
    m_lastChild = m_open;
    m_open = record.parent;
}

RecordStore RecordBuilder::Finish() noexcept
{
    Close(m_read, m_textSize);
    return std::move(m_records);
}

}  // namespace AdvXMLParser
