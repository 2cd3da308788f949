/// Expat as the gate: it decides what is well-formed and reports where the tags are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "xml/SpanTree.h"
#include "xml/UtfEncodings.h"

namespace AdvXMLParser {

/// When the next parser takes over. Only time and memory depend on it, no result does. Other limits than the defaults
/// are for tests: they make short texts pass through many parsers.
struct WindowLimits {
    /// Text after which the next parser takes over: it bounds what a parser must remember.
    std::uint32_t bytes = 64u << 10;

    /// The most open elements that a new parser gets to know, and the most bytes of their tags; it always gets to know
    /// one. After their end tags the next parser must take over, so lower limits cost time in a deep document.
    std::size_t openTags = 4096;
    std::size_t openTagBytes = std::size_t{64} << 10;
};

/// Builds the tree of a text and takes the text over. `encoding` is that of the file that the text was read from, if
/// any. Throws ParsingException and std::bad_alloc.
[[nodiscard]] std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding,
                                                  const WindowLimits& limits = {});

}  // namespace AdvXMLParser
