/// The tree of a document: element records over a text that is never rewritten.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/RecordStore.h"

namespace AdvXMLParser {

struct Placement;

/// The elements of one document as spans of its text.
///
/// The parsed text never changes. An edit appends new text to a second buffer and repoints the spans of one element.
/// Writing the spans in order therefore gives back every byte that no edit replaced.
/// Index 0 is the document itself. It has no tags; its one child is the document element, its tail is what follows.
///
/// Lifetime  An index is valid until its element is removed. It may then serve another element of a higher generation.
/// Threads   None of its own. The const operations may run at the same time.
/// Errors    Edits throw std::bad_alloc or DocumentTooLargeException and then have changed nothing.
/// Invariant No operation recurses, so any depth works on a small stack.
class SpanTree {
public:
    static constexpr std::uint32_t kDocument = 0;
    static constexpr std::uint32_t kNone = 0;  ///< as a link: the document is never a child or a sibling

    /// Takes a well-formed text over, and the records of its elements; record 0 is the document's. In a shallow tree an
    /// element whose record has no children may hide some: everything inside it is its tail.
    SpanTree(std::string text, RecordStore records, bool isShallow = false) noexcept;

    // --- reading -----------------------------------------------------------------------------------------------------

    [[nodiscard]] bool IsAlive(std::uint32_t element, std::uint32_t generation) const noexcept
    {
        return element != kNone && m_records[element].generation == generation;
    }
    [[nodiscard]] std::uint32_t Generation(std::uint32_t element) const noexcept
    {
        return m_records[element].generation;
    }
    [[nodiscard]] std::uint32_t Parent(std::uint32_t element) const noexcept { return m_records[element].parent; }
    [[nodiscard]] std::uint32_t FirstChild(std::uint32_t element) const noexcept
    {
        return m_records[element].firstChild;
    }
    [[nodiscard]] std::uint32_t LastChild(std::uint32_t element) const noexcept;
    [[nodiscard]] std::uint32_t NextSibling(std::uint32_t element) const noexcept { return m_records[element].next; }

    /// The texts of an element; views are valid until the next edit.
    [[nodiscard]] std::string_view Before(std::uint32_t element) const noexcept;
    [[nodiscard]] std::string_view StartTag(std::uint32_t element) const noexcept;
    [[nodiscard]] std::string_view Name(std::uint32_t element) const noexcept;
    [[nodiscard]] std::string_view Tail(std::uint32_t element) const noexcept;
    [[nodiscard]] std::string_view EndTag(std::uint32_t element) const noexcept;
    /// Whether it is written as `<name/>`.
    [[nodiscard]] bool IsEmptyTag(std::uint32_t element) const noexcept;

    /// Whether elements may lie inside it that have no records. Nothing that only reads makes records for them; copies
    /// have them all, and an edit of the element makes them first.
    [[nodiscard]] bool MayHideElements(std::uint32_t element) const noexcept;
    /// A tree of its own of an element with everything in it, with a record for every element.
    [[nodiscard]] std::unique_ptr<SpanTree> WholeTreeOf(std::uint32_t element) const;

    /// The text of an element with everything in it, from its start tag to its end tag.
    [[nodiscard]] std::string TextOf(std::uint32_t element) const;

    /// The text that was parsed.
    [[nodiscard]] std::string_view ParsedText() const noexcept { return m_original; }
    /// The whole text as it is now, in pieces that lie in the tree and are valid until the next edit. A piece ends
    /// where an edit begins or ends; only the elements on the way to an edit are visited.
    [[nodiscard]] std::vector<std::string_view> Runs() const;
    /// The same in one piece.
    [[nodiscard]] std::string Serialize() const;

    // --- editing -----------------------------------------------------------------------------------------------------

    /// Appends an element, placed like its siblings, and returns its index. `tag` is the inside of its start tag: the
    /// name and, after a blank, attributes. Without content it becomes an empty-element tag.
    std::uint32_t AddElement(std::uint32_t parent, std::string_view tag, std::string_view escapedContent = {});
    /// Appends a copy of an element of `source` (which may be this tree) with everything in it and returns its index.
    std::uint32_t AddCopy(std::uint32_t parent, const SpanTree& source, std::uint32_t element);
    /// Replaces the start tag by one of the same name and form.
    void ReplaceStartTag(std::uint32_t element, std::string_view tag);
    /// Replaces everything inside by escaped text.
    void SetContent(std::uint32_t element, std::string_view escaped);
    /// Appends escaped text after the last child.
    void AppendText(std::uint32_t element, std::string_view escaped);
    /// Removes an element with everything in it, and its line when nothing else is on it.
    void Remove(std::uint32_t element);

private:
    class Addition;
    class Copy;
    class ScannedElement;

    [[nodiscard]] std::uint32_t EditBase() const noexcept { return static_cast<std::uint32_t>(m_original.size()) + 1; }
    [[nodiscard]] std::string_view Text(std::uint32_t from, std::uint32_t to) const noexcept;
    /// The text before an element and its start tag.
    [[nodiscard]] std::string_view Opening(std::uint32_t element) const noexcept;
    [[nodiscard]] std::uint32_t CloseOffset(std::uint32_t element) const noexcept;

    void Link(std::uint32_t parent, std::uint32_t child) noexcept;
    void Unlink(std::uint32_t child) noexcept;
    void FreeChildren(std::uint32_t element) noexcept;
    /// The record of an element with that text before its start tag, and that start tag.
    [[nodiscard]] ElementRecord WithOpening(std::uint32_t element, std::string_view before, std::string_view tag,
                                            Addition& addition) const;
    /// The record of an element whose tail becomes `tail`. An empty-element tag becomes a start tag and an end tag.
    [[nodiscard]] ElementRecord WithTail(std::uint32_t element, std::string_view tail, Addition& addition) const;
    /// At least as much as WithTail appends.
    [[nodiscard]] std::size_t RoomForTail(std::uint32_t element, std::string_view tail) const noexcept;
    void ReplaceTail(std::uint32_t element, std::string_view tail);
    void Repoint(std::uint32_t element, const ElementRecord& offsets) noexcept;
    void RememberEdited(std::uint32_t element) noexcept;
    /// The elements with an edit in them, or of them, by index.
    [[nodiscard]] std::vector<bool> EditedPaths() const;
    void Commit(Addition addition);
    void DropDeadEdits() noexcept;
    [[nodiscard]] std::size_t LiveEditSize() const noexcept;

    [[nodiscard]] bool MayHideElementsBelow(std::uint32_t element) const noexcept;
    /// AddCopy of an element that is given as its text.
    std::uint32_t AddCopyOfText(std::uint32_t parent, std::string text);
    /// The same with its white space as it is; kNone, and nothing was changed, when the scanner does not accept it.
    std::uint32_t AddScanned(std::uint32_t parent, const Placement& placement, const std::string& text);
    /// Makes the records of everything that an element hides.
    void Expand(std::uint32_t element);
    /// Gives the children of a record without a place in the tree to the element that it was scanned from, and frees
    /// it.
    void AdoptInside(std::uint32_t element, std::uint32_t scanned) noexcept;

    /// Calls `visit(element)` for every element and the document, in document order.
    template <class Visit>
    void ForEach(Visit visit) const;

    std::string m_original;
    std::string m_edits;
    std::size_t m_dropEditsAt;
    std::vector<std::uint32_t> m_edited;  ///< elements whose records an edit changed; some may be gone
    bool m_isEditedAnywhere = false;      ///< there are too many of them to remember
    RecordStore m_records;
    bool m_isShallow;
};

}  // namespace AdvXMLParser
