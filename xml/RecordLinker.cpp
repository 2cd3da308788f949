#include "xml/RecordLinker.h"

namespace AdvXMLParser {

void RecordLinker::Take(std::span<const Tag> tags)
{
    m_records.Reserve(tags.size());
    State at = m_at;
    for (const Tag& tag : tags) {
        if (tag.kind == TagKind::End) {
            Close(tag.begin + m_shift, at);
        } else {
            const RecordPlace added = Add(tag, at);
            if (tag.kind == TagKind::Start) {
                at.open = added;
                at.lastChild = {};
            } else {
                at.lastChild = added;
            }
        }
        at.read = tag.end + m_shift;
    }
    m_at = at;
}

RecordPlace RecordLinker::Add(const Tag& tag, const State& at) noexcept
{
    const std::uint32_t content = tag.end + m_shift;
    const bool isFirst = at.lastChild.record == nullptr;
    const RecordPlace added = m_records.Append({.before = at.read,
                                                .content = content,
                                                .tail = content,
                                                .end = content,
                                                .parent = at.open.index,
                                                .previous = at.lastChild.index});
    if (isFirst) {
        at.open.record->firstChild = added.index;
        added.record->previous = added.index;
    } else {
        at.lastChild.record->next = added.index;
    }
    return added;
}

/// Closes the innermost element and the list of its children.
void RecordLinker::Close(std::uint32_t end, State& at) noexcept
{
    ElementRecord& record = *at.open.record;
    record.tail = at.read;
    record.end = end;
    if (at.lastChild.record != nullptr) {
        m_records[record.firstChild].previous = at.lastChild.index;
    }
    at.lastChild = at.open;
    const std::uint32_t parent = record.parent;
    at.open = {parent, parent == 0 ? &m_outside : &m_records[parent]};
}

const ElementRecord& RecordLinker::Finish(std::uint32_t end) noexcept
{
    m_outside.tail = m_at.read;
    m_outside.end = end;
    return m_outside;
}

}  // namespace AdvXMLParser
