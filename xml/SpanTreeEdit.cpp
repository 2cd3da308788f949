#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

#include "xml/Exceptions.h"
#include "xml/Layout.h"
#include "xml/SpanTree.h"
#include "xml/Walk.h"

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
    void Reserve(std::size_t size) { m_text.reserve(size); }
    void Append(std::string_view text) { m_text.append(text); }
    [[nodiscard]] std::string Take() && noexcept { return std::move(m_text); }

private:
    std::size_t m_base;
    std::string m_text;
};

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

std::uint32_t SpanTree::AddElement(std::uint32_t parent, std::string_view tag, std::string_view escapedContent)
{
    DropDeadEdits();
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
    const std::uint32_t element = m_records.Acquire();
    Repoint(element, child);
    Link(parent, element);
    return element;
}

/// A copy of a subtree on its way into a tree: its text in an addition, its records linked with one another and not yet
/// with the tree.
///
/// Lifetime  Frees its records again unless they are taken. The source may be the tree itself.
class SpanTree::Copy {
public:
    Copy(SpanTree& tree, const SpanTree& source, std::uint32_t top, const Placement& placement, Addition& addition)
        : m_tree(tree), m_source(source), m_top(top), m_placement(placement), m_addition(addition)
    {
    }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;
    ~Copy()
    {
        if (const std::uint32_t copy = Take(); copy != kNone) {
            m_tree.FreeChildren(copy);
            m_tree.m_records.Free(copy);
        }
    }

    void Make()
    {
        Reserve();
        m_laysOut = !m_placement.line.empty() && IsOnOneLine(m_source, m_top);
        WalkSubtree(
            m_source, m_top, [this](std::uint32_t element) { Enter(element); },
            [this](std::uint32_t element) { Leave(element); });
    }

    /// The record of its top, which is the caller's from now on.
    [[nodiscard]] std::uint32_t Take() noexcept { return std::exchange(m_copy, kNone); }

private:
    /// All at once: what grows step by step is twice and three times as large for a while.
    void Reserve()
    {
        std::size_t count = 0;
        std::size_t size = m_placement.before.size();
        WalkSubtree(
            m_source, m_top,
            [&](std::uint32_t element) {
                ++count;
                size += m_source.Opening(element).size();
            },
            [&](std::uint32_t element) { size += m_source.Tail(element).size() + m_source.EndTag(element).size(); });
        m_tree.m_records.Reserve(count);
        m_addition.Reserve(size);
    }

    void Enter(std::uint32_t element)
    {
        const std::uint32_t copy = m_tree.m_records.Acquire();
        if (m_copy == kNone) {
            m_copy = copy;
        } else {
            m_tree.Link(m_current, copy);
        }
        ElementRecord& record = m_tree.m_records[copy];
        record.before = m_addition.End();
        if (element == m_top) {
            m_addition.Append(m_placement.before);
        } else {
            AppendSpace(m_depth - 1, m_source.Before(element));
        }
        m_addition.Append(m_source.StartTag(element));
        record.content = m_addition.End();
        if (m_depth < kLaidOutLevels) {
            m_isLaidOut[m_depth] = m_laysOut && IsCompact(m_source, element);
        }
        m_current = copy;
        ++m_depth;
    }

    void Leave(std::uint32_t element)
    {
        --m_depth;
        ElementRecord& record = m_tree.m_records[m_current];
        record.tail = m_addition.End();
        AppendSpace(m_depth, m_source.Tail(element));
        record.end = m_addition.End();
        m_addition.Append(m_source.EndTag(element));
        m_current = record.parent;
    }

    /// What stands before a child or behind the last one, in the open element at that depth. When its children get
    /// lines of their own, a line break and the indentation that belongs to where we are.
    void AppendSpace(std::uint32_t parentDepth, std::string_view own)
    {
        if (parentDepth >= kLaidOutLevels || !m_isLaidOut[parentDepth]) {
            m_addition.Append(own);
            return;
        }
        m_addition.Append(m_placement.line);
        for (std::uint32_t i = 0; i < m_depth; ++i) {
            m_addition.Append(m_placement.unit);
        }
    }

    SpanTree& m_tree;
    const SpanTree& m_source;
    std::uint32_t m_top;
    const Placement& m_placement;
    Addition& m_addition;
    bool m_laysOut = false;                          ///< the copy, of one line, gets several
    std::array<bool, kLaidOutLevels> m_isLaidOut{};  ///< of the open elements, by depth
    std::uint32_t m_copy = kNone;                    ///< the top's record
    std::uint32_t m_current = kNone;                 ///< the innermost open element's record
    std::uint32_t m_depth = 0;
};

std::uint32_t SpanTree::AddCopy(std::uint32_t parent, const SpanTree& source, std::uint32_t element)
{
    DropDeadEdits();
    const Placement placement = PlaceChild(*this, parent);
    Addition addition(*this);
    Copy copy(*this, source, element, placement, addition);
    copy.Make();
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    Commit(std::move(addition));
    Repoint(parent, opened);
    const std::uint32_t top = copy.Take();
    Link(parent, top);
    return top;
}

void SpanTree::ReplaceStartTag(std::uint32_t element, std::string_view tag)
{
    DropDeadEdits();
    ElementRecord record = m_records[element];
    const bool isEmpty = IsEmptyTag(element);
    Addition addition(*this);
    record.before = addition.End();
    addition.Append(Before(element));
    addition.Append(tag);
    record.content = addition.End();
    if (isEmpty) {
        record.tail = record.end = record.content;
    }
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
        if (next != kNone) {
            addition.Append(StartTag(next));
            record.content = addition.End();
            if (IsEmptyTag(next)) {
                record.tail = record.end = record.content;
            }
        } else {
            record.end = addition.End();
            addition.Append(EndTag(parent));
        }
        Commit(std::move(addition));
    }
    Unlink(element);
    FreeChildren(element);
    m_records.Free(element);
    Repoint(heir, record);
}

}  // namespace AdvXMLParser
