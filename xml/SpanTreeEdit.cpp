#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "xml/Layout.h"
#include "xml/SpanTree.h"
#include "xml/SpanTreeAddition.h"

namespace AdvXMLParser {

namespace {

std::string OpenForm(std::string_view emptyTag)
{
    const std::size_t last = emptyTag.find_last_not_of(" \t\r\n", emptyTag.size() - 3);
    return std::string(emptyTag.substr(0, last + 1)) + ">";
}

std::string EndTagFor(std::string_view name)
{
    return "</" + std::string(name) + ">";
}

}  // namespace

void SpanTree::Commit(Addition addition)
{
    (void)addition.End();
    std::string text = std::move(addition).Take();
    if (m_edits.empty()) {
        m_edits = std::move(text);
    } else {
        m_edits.append(text);
    }
}

void SpanTree::Repoint(std::uint32_t element, const ElementRecord& offsets) noexcept
{
    ElementRecord& record = m_records[element];
    record.before = offsets.before;
    record.content = offsets.content;
    record.tail = offsets.tail;
    record.end = offsets.end;
    RememberEdited(element);
}

void SpanTree::RememberEdited(std::uint32_t element) noexcept
try {
    constexpr std::size_t kMostRemembered = std::size_t{64} << 10;
    if (m_isEditedAnywhere || (!m_edited.empty() && m_edited.back() == element)) {
        return;
    }
    m_isEditedAnywhere = m_edited.size() >= kMostRemembered;
    m_edited.push_back(element);
} catch (const std::bad_alloc&) {
    m_isEditedAnywhere = true;
}

ElementRecord SpanTree::WithTail(std::uint32_t element, std::string_view tail, Addition& addition) const
{
    ElementRecord record = m_records[element];
    const bool isEmpty = IsEmptyTag(element);
    if (isEmpty) {
        record.before = addition.End();
        addition.Append(Before(element));
        addition.Append(OpenForm(StartTag(element)));
        record.content = addition.End();
    } else if (Tail(element).ends_with(tail)) {
        record.tail = record.end - static_cast<std::uint32_t>(tail.size());
        return record;
    }
    record.tail = addition.End();
    addition.Append(tail);
    record.end = addition.End();
    addition.Append(isEmpty ? EndTagFor(Name(element)) : std::string(EndTag(element)));
    return record;
}

std::size_t SpanTree::RoomForTail(std::uint32_t element, std::string_view tail) const noexcept
{
    // An end tag that is made has the name and three characters more.
    const std::size_t opening = Opening(element).size();
    return tail.size() + (IsEmptyTag(element) ? 2 * opening + 3 : EndTag(element).size());
}

std::uint32_t SpanTree::AddElement(std::uint32_t parent, std::string_view tag, std::string_view escapedContent)
{
    DropDeadEdits();
    Expand(parent);
    const Placement placement = PlaceChild(*this, parent);
    Addition addition(*this);
    ElementRecord child;
    child.before = addition.End();
    addition.Append(placement.before);
    addition.Append(std::string("<").append(tag).append(escapedContent.empty() ? "/>" : ">"));
    child.content = child.tail = child.end = addition.End();
    if (!escapedContent.empty()) {
        addition.Append(escapedContent);
        child.end = addition.End();
        addition.Append(EndTagFor(tag.substr(0, tag.find(' '))));
    }
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    m_records.Reserve(1);
    Commit(std::move(addition));
    Repoint(parent, opened);
    const std::uint32_t element = m_records.Append(child).index;
    Link(parent, element);
    return element;
}

ElementRecord SpanTree::WithOpening(std::uint32_t element, std::string_view before, std::string_view tag,
                                    Addition& addition) const
{
    ElementRecord record = m_records[element];
    record.before = addition.End();
    addition.Append(before);
    addition.Append(tag);
    record.content = addition.End();
    if (IsEmptyTag(element)) {
        record.tail = record.end = record.content;
    }
    return record;
}

void SpanTree::ReplaceStartTag(std::uint32_t element, std::string_view tag)
{
    DropDeadEdits();
    Addition addition(*this);
    const ElementRecord record = WithOpening(element, Before(element), tag, addition);
    Commit(std::move(addition));
    Repoint(element, record);
}

void SpanTree::SetContent(std::uint32_t element, std::string_view escaped)
{
    ReplaceTail(element, escaped);
    FreeChildren(element);
}

void SpanTree::AppendText(std::uint32_t element, std::string_view escaped)
{
    Expand(element);
    ReplaceTail(element, std::string(Tail(element)).append(escaped));
}

void SpanTree::ReplaceTail(std::uint32_t element, std::string_view tail)
{
    if (IsEmptyTag(element) && tail.empty()) {
        return;
    }
    DropDeadEdits();
    Addition addition(*this);
    const ElementRecord record = WithTail(element, tail, addition);
    Commit(std::move(addition));
    Repoint(element, record);
}

void SpanTree::Remove(std::uint32_t element)
{
    DropDeadEdits();
    const std::uint32_t next = NextSibling(element);
    const std::uint32_t parent = Parent(element);
    const std::uint32_t heir = next != kNone ? next : parent;  // takes over the text around the element
    const Deletion deletion = DeletionOf(*this, element);
    ElementRecord record = m_records[heir];
    if (deletion.keptBefore.empty()) {
        (next != kNone ? record.before : record.tail) += deletion.cutAfter;
    } else {
        const std::string kept = std::string(deletion.keptBefore).append(deletion.keptAfter);
        Addition addition(*this);
        record = next != kNone ? WithOpening(next, kept, StartTag(next), addition) : WithTail(parent, kept, addition);
        Commit(std::move(addition));
    }
    Unlink(element);
    FreeChildren(element);
    m_records.Free(element);
    Repoint(heir, record);
}

}  // namespace AdvXMLParser
