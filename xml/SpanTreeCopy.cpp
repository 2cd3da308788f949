#include <cstddef>
#include <cstdint>
#include <utility>

#include "xml/Layout.h"
#include "xml/SpanTree.h"
#include "xml/SpanTreeAddition.h"
#include "xml/Walk.h"

namespace AdvXMLParser {

/// A copy of a subtree on its way into a tree: its text is in an addition, and its records are linked with each other
/// but not yet with the tree.
///
/// Lifetime  Frees its records again unless the caller takes them. The source may be the tree itself.
class SpanTree::Copy {
public:
    Copy(SpanTree& tree, const SpanTree& source, std::uint32_t top, const Placement& placement, Addition& addition)
        : m_tree(tree),
          m_source(source),
          m_top(top),
          m_placement(placement),
          m_layout(source, top, placement),
          m_addition(addition)
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

    /// `more` bytes are added after the copy.
    void Make(std::size_t more)
    {
        Reserve(more);
        WalkSubtree(
            m_source, m_top, [this](std::uint32_t element) { Enter(element); },
            [this](std::uint32_t element) { Leave(element); });
    }

    /// The record of its top, which the caller then owns.
    [[nodiscard]] std::uint32_t Take() noexcept { return std::exchange(m_copy, kNone); }

private:
    /// Reserves everything at once: what grows step by step takes two or three times the memory for a while.
    void Reserve(std::size_t more)
    {
        std::size_t count = 0;
        std::size_t size = m_placement.before.size() + more;
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
        const auto [copy, record] = m_tree.m_records.Append({});
        if (m_copy == kNone) {
            m_copy = copy;
        } else {
            m_tree.Link(m_current, copy);
        }
        record->before = m_addition.End();
        m_addition.Append(m_layout.Enter(element));
        m_addition.Append(m_source.StartTag(element));
        record->content = m_addition.End();
        m_current = copy;
    }

    void Leave(std::uint32_t element)
    {
        ElementRecord& record = m_tree.m_records[m_current];
        record.tail = m_addition.End();
        m_addition.Append(m_layout.Leave(element));
        record.end = m_addition.End();
        m_addition.Append(m_source.EndTag(element));
        m_current = record.parent;
    }

    SpanTree& m_tree;
    const SpanTree& m_source;
    std::uint32_t m_top;
    const Placement& m_placement;
    CopyLayout m_layout;
    Addition& m_addition;
    std::uint32_t m_copy = kNone;     ///< the top's record
    std::uint32_t m_current = kNone;  ///< the innermost open element's record
};

std::uint32_t SpanTree::AddCopy(std::uint32_t parent, const SpanTree& source, std::uint32_t element)
{
    DropDeadEdits();
    Expand(parent);
    if (source.MayHideElementsBelow(element)) {
        return AddCopyOfText(parent, source.TextOf(element));
    }
    const Placement placement = PlaceChild(*this, parent);
    Addition addition(*this);
    Copy copy(*this, source, element, placement, addition);
    copy.Make(RoomForTail(parent, placement.tail));
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    Commit(std::move(addition));
    Repoint(parent, opened);
    const std::uint32_t top = copy.Take();
    Link(parent, top);
    return top;
}

}  // namespace AdvXMLParser
