/// Walking a subtree without recursion.
#pragma once

#include <cstdint>

#include "xml/SpanTree.h"

namespace AdvXMLParser {

/// Visits `top` and everything below it: `enter(element)` before its children, `leave(element)` after them.
template <class Enter, class Leave>
void WalkSubtree(const SpanTree& tree, std::uint32_t top, Enter enter, Leave leave)
{
    std::uint32_t element = top;
    while (true) {
        enter(element);
        if (const std::uint32_t child = tree.FirstChild(element); child != SpanTree::kNone) {
            element = child;
            continue;
        }
        leave(element);
        while (element != top && tree.NextSibling(element) == SpanTree::kNone) {
            element = tree.Parent(element);
            leave(element);
        }
        if (element == top) {
            return;
        }
        element = tree.NextSibling(element);
    }
}

}  // namespace AdvXMLParser
