/// Text to tree.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "xml/Levels.h"
#include "xml/SpanTree.h"
#include "xml/UtfEncodings.h"

namespace AdvXMLParser {

/// Builds the tree of a text and takes the text over. `encoding` is that of the file that the text was read from, if
/// any. The scanner may accept the text; what it does not accept the gate decides, which says where and why a text is
/// refused. Elements below `levels` may be left without records.
/// Throws ParsingException and std::bad_alloc.
[[nodiscard]] std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding,
                                                  std::uint32_t levels = kAllLevels);

}  // namespace AdvXMLParser
