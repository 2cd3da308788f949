/// Loading bytes as the document library does it, without a file.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "xml/Document.h"
#include "xml/ExpatGate.h"
#include "xml/SpanTree.h"
#include "xml/UtfEncodings.h"
#include "zuPolicyManager/Results.h"

namespace zupm::fuzz {

/// A document, or why there is none.
struct LibraryLoad {
    std::unique_ptr<AdvXMLParser::Document> document;
    const AdvXMLParser::SpanTree* tree = nullptr;  ///< the document's own
    AdvXMLParser::UTF_ENCODINGS encoding{};
    result::Code code = result::Success;
    std::string refusal;  ///< line, column and reason of a SyntaxError
};

/// Text is UTF-8 and never was a file's; whatever its declaration says, it is.
[[nodiscard]] LibraryLoad LoadText(std::string text,
                                   std::optional<AdvXMLParser::UTF_ENCODINGS> encoding = std::nullopt);

/// The same through the gate alone.
[[nodiscard]] LibraryLoad LoadByGate(std::string text, std::optional<AdvXMLParser::UTF_ENCODINGS> encoding,
                                     const AdvXMLParser::WindowLimits& limits);

[[nodiscard]] LibraryLoad LoadFromMemory(std::string_view bytes);

/// What saving would write.
[[nodiscard]] std::string BytesOf(const LibraryLoad& load);

}  // namespace zupm::fuzz
