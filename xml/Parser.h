/// Text to document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "xml/Document.h"
#include "xml/Levels.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// Builds documents from text. A strict scanner may accept what is well-formed XML 1.0; Expat has the last word.
///
/// Refuses with ParsingException: text that is not well-formed, entity declarations, references to entities other than
/// the five predefined ones, XML versions other than 1.0, a declaration that names an encoding that is not supported or
/// contradicts the bytes, and 2 GB of text or more. Before that, with InvalidTextException: text that is unchecked and
/// not valid. No file is ever opened.
class Parser {
public:
    /// Takes the text over. The document keeps it byte for byte.
    [[nodiscard]] std::unique_ptr<Document> Parse(XmlText text, std::uint32_t levels = kAllLevels) const;

    /// Parses `length` units of UTF-16.
    [[nodiscard]] std::unique_ptr<Document> Parse(const char16_t* text, std::size_t length,
                                                  std::uint32_t levels = kAllLevels) const;
};

}  // namespace AdvXMLParser
