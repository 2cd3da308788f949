/// Where white space goes when elements come and go, so that an edit shows as the lines that it is about.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace AdvXMLParser {

class SpanTree;

/// Where a new last child of an element goes.
struct Placement {
    std::string before;  ///< goes in front of the child
    std::string tail;    ///< what the parent holds behind it
    std::string line;    ///< line break and indentation of the child's line; empty when it does not get one
    std::string unit;    ///< one step of indentation
};

/// The line break and blanks that a text ends with; empty when it does not end with a line break and blanks.
[[nodiscard]] std::string_view TrailingLine(std::string_view text) noexcept;

/// How many bytes of blanks begin a text that then has a line break; npos when there is no line break behind them.
[[nodiscard]] std::size_t BlanksBeforeLineBreak(std::string_view text) noexcept;

/// Siblings give the line; without any, the parent's line and one step more; a parent that shares its line with others
/// gives none.
[[nodiscard]] Placement PlaceChild(const SpanTree& tree, std::uint32_t parent);

/// Whether an element holds elements and nothing else, not even white space.
[[nodiscard]] bool IsCompact(const SpanTree& tree, std::uint32_t element) noexcept;

/// Whether a whole subtree stands on one line; false also for one that is too large to be laid out.
[[nodiscard]] bool IsOnOneLine(const SpanTree& tree, std::uint32_t element);

}  // namespace AdvXMLParser
