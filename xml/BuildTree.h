/// Text to tree.
#pragma once

#include <cstdint>
#include <memory>

#include "xml/Levels.h"
#include "xml/SpanTree.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// Builds the tree of a text and takes the text over. The scanner may accept the text; what it does not accept is
/// checked (InvalidTextException comes before any ParsingException) and given to the gate, which decides, and says
/// where and why a text is refused. Elements below `levels` may be left without records. Throws InvalidTextException,
/// ParsingException and std::bad_alloc.
[[nodiscard]] std::unique_ptr<SpanTree> BuildTree(XmlText text, std::uint32_t levels = kAllLevels);

/// Throws ParsingException for a text of more than kLargestFile bytes.
void RequireParsableSize(const XmlText& text);

}  // namespace AdvXMLParser
