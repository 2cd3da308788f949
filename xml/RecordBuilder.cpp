#include "xml/RecordBuilder.h"

#include <utility>

namespace AdvXMLParser {

RecordBuilder::RecordBuilder(std::uint32_t textSize) : m_textSize(textSize)
{
    m_records.Reserve(1);
    m_open.push_back(NewPlace());
}

RecordBuilder::Place RecordBuilder::NewPlace() noexcept
{
    const std::uint32_t index = m_records.Acquire();
    return {index, &m_records[index]};
}

void RecordBuilder::Take(std::span<const Tag> tags)
{
    m_records.Reserve(tags.size());
    for (const Tag& tag : tags) {
        switch (tag.kind) {
            case TagKind::Start:
                m_open.push_back(Add(tag));
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
    const Place added = NewPlace();
    const Place parent = m_open.back();
    const bool isFirst = m_lastChild.record == nullptr;
    (isFirst ? parent.record->firstChild : m_lastChild.record->next) = added.index;
    added.record->before = m_read;
    added.record->content = tag.end;
    added.record->tail = tag.end;
    added.record->end = tag.end;
    added.record->parent = parent.index;
    added.record->previous = isFirst ? added.index : m_lastChild.index;
    return added;
}

/// Closes the innermost element and the list of its children.
void RecordBuilder::Close(std::uint32_t end) noexcept
{
    ElementRecord& record = *m_open.back().record;
    record.tail = m_read;
    record.end = end;
    if (m_lastChild.record != nullptr) {
        m_records[record.firstChild].previous = m_lastChild.index;
    }
    m_lastChild = m_open.back();
    m_open.pop_back();
}

RecordStore RecordBuilder::Finish() noexcept
{
    Close(m_textSize);
    return std::move(m_records);
}

}  // namespace AdvXMLParser
