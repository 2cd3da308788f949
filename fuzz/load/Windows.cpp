#include "fuzz/load/Windows.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "fuzz/support/Demand.h"
#include "xml/Encoding.h"

namespace zupm::fuzz {

using AdvXMLParser::SpanTree;
using AdvXMLParser::WindowLimits;
using AdvXMLParser::XmlText;

namespace {

WindowLimits LimitsFrom(std::string_view bytes)
{
    const std::uint32_t choice =
        std::accumulate(bytes.begin(), bytes.end(), std::uint32_t{0},
                        [](std::uint32_t sum, char c) { return sum * 31 + static_cast<unsigned char>(c); });
    constexpr std::uint32_t kMostBytes = 64;
    constexpr std::uint32_t kMostTags = 4;
    constexpr std::uint32_t kMostTagBytes = 16;
    return {.bytes = choice % kMostBytes,
            .openTags = 1 + choice / kMostBytes % kMostTags,
            .openTagBytes = choice / kMostBytes / kMostTags % kMostTagBytes};
}

/// Where a view into a tree's text begins.
std::size_t OffsetOf(const SpanTree& tree, std::string_view view)
{
    return static_cast<std::size_t>(view.data() - tree.ParsedText().data());
}

bool IsSameSpan(const SpanTree& left, std::string_view inLeft, const SpanTree& right, std::string_view inRight)
{
    return inLeft.size() == inRight.size() && OffsetOf(left, inLeft) == OffsetOf(right, inRight);
}

bool IsSameElement(const SpanTree& left, const SpanTree& right, std::uint32_t element)
{
    return left.Parent(element) == right.Parent(element) && left.FirstChild(element) == right.FirstChild(element) &&
           left.NextSibling(element) == right.NextSibling(element) &&
           IsSameSpan(left, left.Before(element), right, right.Before(element)) &&
           IsSameSpan(left, left.StartTag(element), right, right.StartTag(element)) &&
           IsSameSpan(left, left.Tail(element), right, right.Tail(element)) &&
           IsSameSpan(left, left.EndTag(element), right, right.EndTag(element));
}

/// The element after another one in document order; kDocument after the last.
std::uint32_t NextOf(const SpanTree& tree, std::uint32_t element)
{
    if (tree.FirstChild(element) != SpanTree::kNone) {
        return tree.FirstChild(element);
    }
    while (element != SpanTree::kDocument && tree.NextSibling(element) == SpanTree::kNone) {
        element = tree.Parent(element);
    }
    return element == SpanTree::kDocument ? SpanTree::kDocument : tree.NextSibling(element);
}

}  // namespace

void DemandSameInWindows(std::string_view bytes, const LibraryLoad& whole)
{
    std::optional<XmlText> text = AdvXMLParser::Decode(std::string(bytes), whole.encoding);
    if (!text) {
        return;
    }
    const LibraryLoad load = LoadByGate(std::move(*text).TakeUtf8(), whole.encoding, LimitsFrom(bytes));
    Demand(load.refusal == whole.refusal, "the gate alone refuses what is refused", load.refusal + whole.refusal);
    if (!load.tree) {
        return;
    }
    std::uint32_t element = SpanTree::kDocument;
    do {
        Demand(IsSameElement(*whole.tree, *load.tree, element), "the gate alone finds the elements that are found",
               whole.tree->StartTag(element));
        element = NextOf(*whole.tree, element);
    } while (element != SpanTree::kDocument);
}

}  // namespace zupm::fuzz
