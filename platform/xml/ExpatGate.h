/// Expat as the gate: it decides what is well-formed and tells where the tags are.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/xml/SpanTree.h"
#include "platform/xml/UtfEncodings.h"

namespace AdvXMLParser {

/// Builds the tree of a text, which it takes over. `encoding` is that of the file the text came from, if any.
/// Throws ParsingException and std::bad_alloc.
[[nodiscard]] std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding);

}  // namespace AdvXMLParser
