/// Loading bytes as the document library does it, without a file.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/xml/AdvXMLParser.h"
#include "platform/xml/SpanTree.h"
#include "zuPolicyManager/Results.h"

namespace zupm::fuzz {

/// A document, or why there is none.
struct LibraryLoad {
    std::unique_ptr<AdvXMLParser::Document> document;
    const AdvXMLParser::SpanTree* tree = nullptr;  ///< the document's own
    AdvXMLParser::UTF_ENCODINGS encoding{};
    result::Code code = result::Success;
};

[[nodiscard]] LibraryLoad LoadFromMemory(std::string_view bytes);

/// What saving would write.
[[nodiscard]] std::string BytesOf(const LibraryLoad& load);

}  // namespace zupm::fuzz
