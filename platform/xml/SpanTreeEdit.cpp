#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "platform/xml/Exceptions.h"
#include "platform/xml/Layout.h"
#include "platform/xml/SpanTree.h"
#include "platform/xml/Walk.h"

namespace AdvXMLParser {

namespace {

/// Levels of a copied subtree that are laid out when it comes on one line: the element's children and theirs. What lies
/// deeper may be a value, in which white space would count.
constexpr std::uint32_t kLaidOutLevels = 2;

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

/// New text on its way into the edit buffer, with the offsets that it will have there.
class SpanTree::Addition {
public:
    explicit Addition(const SpanTree& tree) noexcept : m_base(tree.EditBase() + tree.m_edits.size()) {}

    [[nodiscard]] std::uint32_t End() const
    {
        const std::size_t end = m_base + m_text.size();
        if (end >= std::numeric_limits<std::uint32_t>::max()) {
            throw DocumentTooLargeException();
        }
        return static_cast<std::uint32_t>(end);
    }
    void Append(std::string_view text) { m_text.append(text); }
    [[nodiscard]] const std::string& Text() const noexcept { return m_text; }

private:
    std::size_t m_base;
    std::string m_text;
};

void SpanTree::Commit(const Addition& addition)
{
    (void)addition.End();
    m_edits.append(addition.Text());
}

void SpanTree::Repoint(std::uint32_t element, const ElementRecord& offsets) noexcept
{
    ElementRecord& record = m_records[element];
    record.before = offsets.before;
    record.start = offsets.start;
    record.content = offsets.content;
    record.tail = offsets.tail;
    record.end = offsets.end;
}

ElementRecord SpanTree::WithTail(std::uint32_t element, std::string_view tail, Addition& addition) const
{
    ElementRecord record = m_records[element];
    const bool isEmpty = IsEmptyTag(element);
    if (isEmpty) {
        record.before = addition.End();
        addition.Append(Before(element));
        record.start = addition.End();
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

std::uint32_t SpanTree::AddElement(std::uint32_t parent, std::string_view tag, std::string_view escapedContent)
{
    DropDeadEdits();
    const Placement placement = PlaceChild(*this, parent);
    Addition addition(*this);
    ElementRecord child;
    child.before = addition.End();
    addition.Append(placement.before);
    child.start = addition.End();
    addition.Append(std::string("<").append(tag).append(escapedContent.empty() ? "/>" : ">"));
    child.content = child.tail = child.end = addition.End();
    if (!escapedContent.empty()) {
        addition.Append(escapedContent);
        child.end = addition.End();
        addition.Append(EndTagFor(tag.substr(0, tag.find(' '))));
    }
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    m_records.Reserve(1);
    Commit(addition);
    Repoint(parent, opened);
    const std::uint32_t element = m_records.Acquire();
    Repoint(element, child);
    Link(parent, element);
    return element;
}

/// Copies a subtree's text and notes where each of its elements will be.
class SpanTree::CopyWalk {
public:
    struct Copied {
        ElementRecord offsets;
        std::size_t parent = 0;  ///< index of the parent among the copied; the subtree's top has itself
        bool laysOut = false;    ///< its children get lines of their own
    };

    CopyWalk(const SpanTree& source, std::uint32_t top, const Placement& placement, Addition& addition)
        : m_source(source),
          m_top(top),
          m_placement(placement),
          m_addition(addition),
          m_layOut(!placement.line.empty() && IsOnOneLine(source, top))
    {
        // Counted first: a vector that grows is twice and three times as large for a while.
        std::size_t count = 0;
        WalkSubtree(
            source, top, [&](std::uint32_t) { ++count; }, [](std::uint32_t) {});
        m_elements.reserve(count);
        WalkSubtree(
            source, top, [this](std::uint32_t element) { Enter(element); },
            [this](std::uint32_t element) { Leave(element); });
    }

    [[nodiscard]] const std::vector<Copied>& Elements() const noexcept { return m_elements; }

private:
    void Enter(std::uint32_t element)
    {
        Copied copied;
        copied.parent = m_current;
        copied.laysOut = m_layOut && m_depth < kLaidOutLevels && IsCompact(m_source, element);
        copied.offsets.before = m_addition.End();
        m_addition.Append(BeforeOf(element));
        copied.offsets.start = m_addition.End();
        m_addition.Append(m_source.StartTag(element));
        copied.offsets.content = m_addition.End();
        m_current = m_elements.size();
        m_elements.push_back(copied);
        ++m_depth;
    }

    void Leave(std::uint32_t element)
    {
        --m_depth;
        Copied& copied = m_elements[m_current];
        copied.offsets.tail = m_addition.End();
        m_addition.Append(copied.laysOut ? LineAt(m_depth) : std::string(m_source.Tail(element)));
        copied.offsets.end = m_addition.End();
        m_addition.Append(m_source.EndTag(element));
        m_current = copied.parent;
    }

    [[nodiscard]] std::string BeforeOf(std::uint32_t element) const
    {
        if (element == m_top) {
            return m_placement.before;
        }
        return m_elements[m_current].laysOut ? LineAt(m_depth) : std::string(m_source.Before(element));
    }

    [[nodiscard]] std::string LineAt(std::uint32_t depth) const
    {
        std::string line = m_placement.line;
        for (std::uint32_t i = 0; i < depth; ++i) {
            line += m_placement.unit;
        }
        return line;
    }

    const SpanTree& m_source;
    std::uint32_t m_top;
    const Placement& m_placement;
    Addition& m_addition;
    bool m_layOut;
    std::vector<Copied> m_elements;
    std::size_t m_current = 0;
    std::uint32_t m_depth = 0;
};

std::uint32_t SpanTree::AddCopy(std::uint32_t parent, const SpanTree& source, std::uint32_t element)
{
    DropDeadEdits();
    const Placement placement = PlaceChild(*this, parent);
    Addition addition(*this);
    const CopyWalk copy(source, element, placement, addition);
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    std::vector<std::uint32_t> indexes(copy.Elements().size());
    m_records.Reserve(indexes.size());
    Commit(addition);
    Repoint(parent, opened);
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        indexes[i] = m_records.Acquire();
        Repoint(indexes[i], copy.Elements()[i].offsets);
        Link(i == 0 ? parent : indexes[copy.Elements()[i].parent], indexes[i]);
    }
    return indexes.front();
}

void SpanTree::ReplaceStartTag(std::uint32_t element, std::string_view tag)
{
    DropDeadEdits();
    ElementRecord record = m_records[element];
    const bool isEmpty = IsEmptyTag(element);
    Addition addition(*this);
    record.before = addition.End();
    addition.Append(Before(element));
    record.start = addition.End();
    addition.Append(tag);
    record.content = addition.End();
    if (isEmpty) {
        record.tail = record.end = record.content;
    }
    Commit(addition);
    Repoint(element, record);
}

void SpanTree::SetContent(std::uint32_t element, std::string_view escaped)
{
    ReplaceTail(element, escaped);
    FreeChildren(element);
}

void SpanTree::AppendText(std::uint32_t element, std::string_view escaped)
{
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
    Commit(addition);
    Repoint(element, record);
}

void SpanTree::Remove(std::uint32_t element)
{
    DropDeadEdits();
    const std::uint32_t next = NextSibling(element);
    const std::uint32_t parent = Parent(element);
    const std::string_view before = Before(element);
    const std::string_view behind = next != kNone ? Before(next) : Tail(parent);
    const std::string_view line = TrailingLine(before);
    const std::size_t blanks = BlanksBeforeLineBreak(behind);
    const bool hasOwnLine = !line.empty() && blanks != std::string_view::npos;
    const std::string_view keptBefore = hasOwnLine ? before.substr(0, before.size() - line.size()) : before;
    const std::string_view keptBehind = hasOwnLine ? behind.substr(blanks) : behind;

    const std::uint32_t heir = next != kNone ? next : parent;  // takes what stays of the white space
    ElementRecord record = m_records[heir];
    if (keptBefore.empty()) {
        const auto cut = static_cast<std::uint32_t>(behind.size() - keptBehind.size());
        (next != kNone ? record.before : record.tail) += cut;
    } else {
        Addition addition(*this);
        (next != kNone ? record.before : record.tail) = addition.End();
        addition.Append(keptBefore);
        addition.Append(keptBehind);
        (next != kNone ? record.start : record.end) = addition.End();
        addition.Append(next != kNone ? StartTag(next) : EndTag(parent));
        if (next != kNone) {
            record.content = addition.End();
            if (IsEmptyTag(next)) {
                record.tail = record.end = record.content;
            }
        }
        Commit(addition);
    }
    Unlink(element);
    FreeChildren(element);
    m_records.Free(element);
    Repoint(heir, record);
}

}  // namespace AdvXMLParser
