/// The rule for line breaks and indentation: what text an edit inserts and what text a deletion takes along. An edit
/// then changes only the lines that it is about.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace AdvXMLParser {

class SpanTree;

/// Where a new last child of an element goes. Siblings give the line; without any, it is the parent's line and one step
/// more. A parent that shares its line with others gives none.
struct Placement {
    std::string before;  ///< precedes the child
    std::string tail;    ///< follows the child in its parent
    std::string line;    ///< line break and indentation of the child's line; empty when it does not get one
    std::string unit;    ///< one step of indentation
};
[[nodiscard]] Placement PlaceChild(const SpanTree& tree, std::uint32_t parent);

/// The white space in the copy of a subtree, for a walk through it. A subtree that is on one line gets a line for each
/// element of its first levels when its place has a line of its own; otherwise it keeps its white space.
///
/// Lifetime  Does not outlive the source and the placement; the views are valid until the source is edited.
class CopyLayout {
public:
    CopyLayout(const SpanTree& source, std::uint32_t top, const Placement& placement);
    CopyLayout(const CopyLayout&) = delete;
    CopyLayout& operator=(const CopyLayout&) = delete;
    ~CopyLayout() = default;

    /// What precedes the next element that the walk enters.
    [[nodiscard]] std::string_view Enter(std::uint32_t element) noexcept;
    /// What follows the last child of the element that the walk leaves.
    [[nodiscard]] std::string_view Leave(std::uint32_t element) noexcept;

private:
    /// The levels that get lines: the top's children and theirs. What lies deeper may be a value, in which white space
    /// would count.
    static constexpr std::size_t kLevels = 2;

    [[nodiscard]] std::string_view Space(std::size_t parentDepth, std::string_view own) const noexcept;

    const SpanTree& m_source;
    std::uint32_t m_top;
    const Placement& m_placement;
    bool m_laysOut;                                ///< the copy of a subtree on one line gets several
    std::array<std::string, kLevels + 1> m_lines;  ///< line break and indentation by depth
    std::array<bool, kLevels> m_isLaidOut{};       ///< of the open elements, by depth
    std::size_t m_depth = 0;                       ///< open elements
};

/// Whether an element, given as its text, is certainly on several lines, as far as the layout of its copy goes: a line
/// break in an end tag does not count. Looks at one line break only, so false means nothing.
[[nodiscard]] bool IsOnSeveralLines(std::string_view text) noexcept;

/// What a deleted element leaves of the text before its start tag and of the text up to the next tag: its line goes
/// with it when nothing else is on it. The views are valid until the next edit.
struct Deletion {
    std::string_view keptBefore;
    std::string_view keptAfter;
    std::uint32_t cutAfter;  ///< bytes that go before `keptAfter`
};
[[nodiscard]] Deletion DeletionOf(const SpanTree& tree, std::uint32_t element) noexcept;

}  // namespace AdvXMLParser
