/// Expat as the gate: it has the last word on what is well-formed, and says where and why a text is not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "xml/RecordStore.h"
#include "xml/UtfEncodings.h"
#include "xml/scan/Scanner.h"

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

/// Reads one text from its beginning to its end and makes the records of its elements.
///
/// Lifetime  The text outlives it.
/// Errors    Throws ParsingException and std::bad_alloc; after that it cannot be used.
class ExpatGate {
public:
    /// `encoding` is that of the file that the text was read from, if any.
    ExpatGate(std::string_view text, std::optional<UTF_ENCODINGS> encoding, const WindowLimits& limits = {});
    ~ExpatGate();
    ExpatGate(const ExpatGate&) = delete;
    ExpatGate& operator=(const ExpatGate&) = delete;

    /// Reads a DOCTYPE and everything up to the content of the document element. Where that element's start tag is;
    /// nothing when there is no DOCTYPE or no content. Call first, if at all.
    [[nodiscard]] std::optional<RootTag> ReadDoctype();

    /// Reads what is left. Call once.
    [[nodiscard]] RecordStore ReadRest();

private:
    class Reader;

    std::unique_ptr<Reader> m_reader;
};

}  // namespace AdvXMLParser
