/// Expat as the gate: it decides what is well-formed and tells where the tags are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "xml/SpanTree.h"
#include "xml/UtfEncodings.h"

namespace AdvXMLParser {

/// When one parser gives way to the next. No result depends on it, only time and memory do; the defaults are for use,
/// others let short texts pass through many parsers.
struct WindowLimits {
    /// Text after which the next parser takes over: it bounds what a parser can have to remember.
    std::uint32_t bytes = 64u << 10;

    /// The open elements that a parser is told of when it takes over: so many, at least one, and so many bytes of their
    /// tags. Behind their end tags it has to be replaced again, so fewer would cost time in a deep document.
    std::size_t openTags = 4096;
    std::size_t openTagBytes = std::size_t{64} << 10;
};

/// Builds the tree of a text, which it takes over. `encoding` is that of the file the text came from, if any.
/// Throws ParsingException and std::bad_alloc.
[[nodiscard]] std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding,
                                                  const WindowLimits& limits = {});

}  // namespace AdvXMLParser
