/// One Expat parser over a stretch of a document's text.
#pragma once

#include <expat.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace AdvXMLParser {

/// A parser that can start between any two tags of a text.
///
/// Expat keeps a record of every open element and of every name that it has read. A million of either take more memory
/// than the document itself, so no parser reads a large document from its beginning to its end.
///
/// Errors    The constructor throws std::bad_alloc; ask Parser() for Expat's own errors.
class ExpatWindow {
public:
    /// A parser for the text after `start`. `openTags` are the start tags, outermost first, of the open elements whose
    /// end tags the parser must match. Without any, `start` is the beginning of the document.
    ExpatWindow(std::uint32_t start, std::string_view openTags);

    [[nodiscard]] XML_Parser Parser() const noexcept { return m_parser.get(); }
    [[nodiscard]] std::uint32_t Start() const noexcept { return m_start; }

    /// Where the event that Expat is reporting begins in the text, and its length.
    [[nodiscard]] std::uint32_t Offset() const noexcept;
    [[nodiscard]] std::uint32_t Length() const noexcept;

    /// Parses the next piece of the text; false when the parser stopped.
    [[nodiscard]] bool Feed(std::string_view piece, bool isLast) noexcept;

private:
    struct Deleter {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Deleter> m_parser;
    std::uint32_t m_start;
    std::int64_t m_ownBytes;  ///< bytes that it was fed and that are not part of the text
};

}  // namespace AdvXMLParser
