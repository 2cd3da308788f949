// What elements hold below the levels that were read.
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "xml/BuildTree.h"
#include "xml/Layout.h"
#include "xml/RecordLinker.h"
#include "xml/SpanTree.h"
#include "xml/SpanTreeAddition.h"
#include "xml/Walk.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

/// The records of an element that is scanned, on their way into a tree: linked with each other but not yet with the
/// tree.
///
/// Lifetime  Frees its records again unless the caller takes them.
class SpanTree::ScannedElement final : public TagSink {
public:
    /// The element's text begins at `begin` in the tree's text. Below 0 it may wrap around as long as its start tag
    /// alone lies there.
    ScannedElement(SpanTree& tree, std::uint32_t begin) noexcept : m_tree(tree), m_linker(tree.m_records, begin) {}
    ScannedElement(const ScannedElement&) = delete;
    ScannedElement& operator=(const ScannedElement&) = delete;
    ~ScannedElement()
    {
        if (const std::uint32_t top = m_isTaken ? kNone : m_linker.First(); top != kNone) {
            m_tree.FreeChildren(top);
            m_tree.m_records.Free(top);
        }
    }

    void Take(std::span<const Tag> tags) override { m_linker.Take(tags); }

    /// The record of the element, which the caller then owns.
    [[nodiscard]] std::uint32_t Take() noexcept
    {
        m_isTaken = true;
        return m_linker.First();
    }

private:
    SpanTree& m_tree;
    RecordLinker m_linker;
    bool m_isTaken = false;
};

bool SpanTree::MayHideElements(std::uint32_t element) const noexcept
{
    return m_isShallow && FirstChild(element) == kNone && Tail(element).find('<') != std::string_view::npos;
}

bool SpanTree::MayHideElementsBelow(std::uint32_t element) const noexcept
{
    bool isFound = false;
    if (m_isShallow) {
        WalkSubtree(
            *this, element, [&](std::uint32_t inner) { isFound = isFound || MayHideElements(inner); },
            [](std::uint32_t) {});
    }
    return isFound;
}

std::string SpanTree::TextOf(std::uint32_t element) const
{
    std::string text;
    const auto forEachPart = [&](auto visit) {
        WalkSubtree(
            *this, element, [&](std::uint32_t inner) { visit(inner == element ? StartTag(inner) : Opening(inner)); },
            [&](std::uint32_t inner) { visit(Text(m_records[inner].tail, CloseOffset(inner))); });
    };
    std::size_t size = 0;
    forEachPart([&](std::string_view part) { size += part.size(); });
    text.reserve(size);
    forEachPart([&](std::string_view part) { text.append(part); });
    return text;
}

std::unique_ptr<SpanTree> SpanTree::WholeTreeOf(std::uint32_t element) const
{
    return BuildTree(XmlText(TextOf(element)));
}

std::uint32_t SpanTree::AddCopyOfText(std::uint32_t parent, std::string text)
{
    const Placement placement = PlaceChild(*this, parent);
    if (placement.line.empty() || IsOnSeveralLines(text)) {
        if (const std::uint32_t top = AddScanned(parent, placement, text); top != kNone) {
            return top;
        }
    }
    const std::unique_ptr<SpanTree> source = BuildTree(XmlText(std::move(text)));
    return AddCopy(parent, *source, source->FirstChild(kDocument));
}

std::uint32_t SpanTree::AddScanned(std::uint32_t parent, const Placement& placement, const std::string& text)
{
    Addition addition(*this);
    const std::uint32_t before = addition.End();
    addition.Reserve(placement.before.size() + text.size() + RoomForTail(parent, placement.tail));
    addition.Append(placement.before);
    ScannedElement copy(*this, addition.End());
    addition.Append(text);
    (void)addition.End();  // throws when the text is too large for the offsets of the records
    if (!ScanDocument(text, copy)) {
        return kNone;
    }
    const ElementRecord opened = WithTail(parent, placement.tail, addition);
    Commit(std::move(addition));
    Repoint(parent, opened);
    const std::uint32_t top = copy.Take();
    m_records[top].before = before;
    Link(parent, top);
    return top;
}

void SpanTree::Expand(std::uint32_t element)
{
    if (!MayHideElements(element)) {
        return;
    }
    // The inside is where it was; an edit may have moved the start tag away from it.
    const std::string text = TextOf(element);
    const auto begin = static_cast<std::uint32_t>(m_records[element].tail - StartTag(element).size());
    ScannedElement scanned(*this, begin);
    // The scanner accepted the whole document, so it accepts a part of it that nobody edited.
    if (ScanDocument(text, scanned)) {
        AdoptInside(element, scanned.Take());
    }
}

void SpanTree::AdoptInside(std::uint32_t element, std::uint32_t scanned) noexcept
{
    ElementRecord& record = m_records[element];
    ElementRecord& inside = m_records[scanned];
    record.firstChild = std::exchange(inside.firstChild, kNone);
    record.tail = inside.tail;
    for (std::uint32_t child = record.firstChild; child != kNone; child = m_records[child].next) {
        m_records[child].parent = element;
    }
    m_records.Free(scanned);
}

}  // namespace AdvXMLParser
