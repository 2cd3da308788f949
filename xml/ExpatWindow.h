/// One Expat parser over a stretch of a document's text.
#pragma once

#include <expat.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace AdvXMLParser {

/// A parser that starts anywhere between the tags of a text.
///
/// Expat keeps a record of every open element and of every name that it has met. A million of either take more memory
/// than the document itself, so no parser reads a large document from its beginning to its end.
///
/// Errors    The constructor throws std::bad_alloc; Expat's own errors are the parser's to tell.
class ExpatWindow {
public:
    /// A parser for what follows `start`. `openTags` are start tags of the elements that are open there, outermost
    /// first: those whose end tags the parser is to match. Without any, `start` is the beginning of the document.
    ExpatWindow(std::uint32_t start, std::string_view openTags);

    [[nodiscard]] XML_Parser Parser() const noexcept { return m_parser.get(); }
    [[nodiscard]] std::uint32_t Start() const noexcept { return m_start; }

    /// Where the event that is being reported begins in the text, and how long it is.
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
    std::int64_t m_ownBytes;  ///< what it was fed that is not of the text
};

}  // namespace AdvXMLParser
