#include "xml/Layout.h"

#include "xml/SpanTree.h"
#include "xml/Walk.h"

namespace AdvXMLParser {

namespace {

constexpr std::string_view kDefaultUnit = "  ";

/// A new element repeats the indentation of its siblings up to this length, line break included.
constexpr std::size_t kLongestLine = 256;
/// A larger subtree is copied as it is: line breaks between its elements could multiply its size.
constexpr std::size_t kMostLaidOut = 10'000;

/// The line break and blanks that a text ends with; empty when it does not end with a line break and blanks.
std::string_view TrailingLine(std::string_view text) noexcept
{
    const std::size_t last = text.find_last_not_of(" \t");
    if (last == std::string_view::npos || (text[last] != '\n' && text[last] != '\r')) {
        return {};
    }
    const bool isPair = text[last] == '\n' && last > 0 && text[last - 1] == '\r';
    return text.substr(isPair ? last - 1 : last);
}

/// The number of blanks before the line break that a text begins with; npos when it begins with neither.
std::size_t BlanksBeforeLineBreak(std::string_view text) noexcept
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first != std::string_view::npos && (text[first] == '\n' || text[first] == '\r') ? first
                                                                                           : std::string_view::npos;
}

/// The blanks of a line as TrailingLine gives it.
std::string_view Indentation(std::string_view line) noexcept
{
    const std::size_t blank = line.find_first_not_of("\r\n");
    return blank == std::string_view::npos ? std::string_view{} : line.substr(blank);
}

/// A line as a new element gets it.
std::string_view Repeatable(std::string_view line) noexcept
{
    return line.size() <= kLongestLine ? line : line.substr(0, line.find_first_of(" \t"));
}

/// The line that an element begins on, without one the line that its end tag begins: a private copy does not keep the
/// line of the copied element itself, but its end tag still shows the indentation.
std::string_view OwnLine(const SpanTree& tree, std::uint32_t element) noexcept
{
    const std::string_view line = TrailingLine(tree.Before(element));
    return line.empty() ? TrailingLine(tree.Tail(element)) : line;
}

std::string UnitBetween(std::string_view outer, std::string_view inner)
{
    const std::string_view outside = Indentation(outer);
    const std::string_view inside = Indentation(Repeatable(inner));
    if (outer.empty() && inside.empty()) {
        return {};  // without a line of its own and still at the margin: a file that does not indent
    }
    return std::string(!outer.empty() && inside.starts_with(outside) ? inside.substr(outside.size()) : kDefaultUnit);
}

/// One step of indentation below an element that begins on `line`: as deep as that element is below its own parent.
std::string UnitBelow(const SpanTree& tree, std::uint32_t element, std::string_view line)
{
    const std::uint32_t parent = tree.Parent(element);
    return parent == SpanTree::kDocument ? std::string(kDefaultUnit) : UnitBetween(OwnLine(tree, parent), line);
}

bool HasLineBreak(std::string_view text) noexcept
{
    return text.find_first_of("\r\n") != std::string_view::npos;
}

/// Whether an element holds elements and nothing else, not even white space.
bool IsCompact(const SpanTree& tree, std::uint32_t element) noexcept
{
    if (tree.FirstChild(element) == SpanTree::kNone || !tree.Tail(element).empty()) {
        return false;
    }
    for (std::uint32_t child = tree.FirstChild(element); child != SpanTree::kNone; child = tree.NextSibling(child)) {
        if (!tree.Before(child).empty()) {
            return false;
        }
    }
    return true;
}

/// Whether a whole subtree is on one line; false also for one that is too large to be laid out.
bool IsOnOneLine(const SpanTree& tree, std::uint32_t element)
{
    bool found = HasLineBreak(tree.StartTag(element)) || HasLineBreak(tree.Tail(element));
    std::size_t elements = 0;
    WalkSubtree(
        tree, element,
        [&](std::uint32_t inner) {
            ++elements;
            found =
                found || (inner != element && (HasLineBreak(tree.Before(inner)) || HasLineBreak(tree.StartTag(inner)) ||
                                               HasLineBreak(tree.Tail(inner))));
        },
        [](std::uint32_t) {});
    return !found && elements <= kMostLaidOut;
}

}  // namespace

Placement PlaceChild(const SpanTree& tree, std::uint32_t parent)
{
    const std::string_view oldTail = tree.Tail(parent);
    const std::string_view endLine = TrailingLine(oldTail);
    const std::string_view kept = oldTail.substr(0, oldTail.size() - endLine.size());
    Placement placement;
    placement.tail = endLine;
    if (const std::uint32_t sibling = tree.LastChild(parent); sibling != SpanTree::kNone) {
        placement.line = Repeatable(TrailingLine(tree.Before(sibling)));
        placement.unit = UnitBetween(OwnLine(tree, parent), placement.line);
    } else {
        const std::string_view parentLine =
            kept.empty() && endLine.empty() ? Repeatable(TrailingLine(tree.Before(parent))) : endLine;
        placement.unit = UnitBelow(tree, parent, parentLine);
        if (!parentLine.empty()) {
            placement.line = std::string(Repeatable(parentLine)) + placement.unit;
            placement.tail = parentLine;
        }
    }
    placement.before = std::string(kept) + placement.line;
    return placement;
}

CopyLayout::CopyLayout(const SpanTree& source, std::uint32_t top, const Placement& placement)
    : m_source(source),
      m_top(top),
      m_placement(placement),
      m_laysOut(!placement.line.empty() && IsOnOneLine(source, top))
{
    std::string line = placement.line;
    for (std::string& ofDepth : m_lines) {
        ofDepth = line;
        line += placement.unit;
    }
}

std::string_view CopyLayout::Enter(std::uint32_t element) noexcept
{
    const std::string_view before =
        element == m_top ? m_placement.before : Space(m_depth - 1, m_source.Before(element));
    if (m_depth < kLevels) {
        m_isLaidOut.at(m_depth) = m_laysOut && IsCompact(m_source, element);
    }
    ++m_depth;
    return before;
}

std::string_view CopyLayout::Leave(std::uint32_t element) noexcept
{
    --m_depth;
    return Space(m_depth, m_source.Tail(element));
}

std::string_view CopyLayout::Space(std::size_t parentDepth, std::string_view own) const noexcept
{
    return parentDepth < kLevels && m_isLaidOut.at(parentDepth) ? m_lines.at(m_depth) : own;
}

bool IsOnSeveralLines(std::string_view text) noexcept
{
    const std::size_t newLine = text.find('\n');
    const std::size_t lineBreak = newLine != std::string_view::npos ? newLine : text.find('\r');
    if (lineBreak == std::string_view::npos) {
        return false;
    }
    const std::size_t markup = text.find_last_of("<>", lineBreak);
    return text[markup] == '>' || text[markup + 1] != '/';
}

Deletion DeletionOf(const SpanTree& tree, std::uint32_t element) noexcept
{
    const std::uint32_t next = tree.NextSibling(element);
    const std::string_view before = tree.Before(element);
    const std::string_view after = next != SpanTree::kNone ? tree.Before(next) : tree.Tail(tree.Parent(element));
    const std::string_view line = TrailingLine(before);
    const std::size_t blanks = BlanksBeforeLineBreak(after);
    if (line.empty() || blanks == std::string_view::npos) {
        return {before, after, 0};
    }
    return {before.substr(0, before.size() - line.size()), after.substr(blanks), static_cast<std::uint32_t>(blanks)};
}

}  // namespace AdvXMLParser
