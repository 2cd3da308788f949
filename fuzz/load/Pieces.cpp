#include "fuzz/load/Pieces.h"

#include <cstddef>
#include <numeric>
#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "platform/xml/Encoding.h"

namespace zupm::fuzz {

namespace {

/// The parser's pieces are this long, as long as no token is longer.
constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

constexpr std::size_t kOneDocumentIn = 32;

/// Only in front of UTF-8 that has no declaration and no signature may anything stand.
bool MayFollowComment(std::string_view document)
{
    return AdvXMLParser::DetectEncoding(document) == AdvXMLParser::UTF_ENCODINGS::Utf8 &&
           !document.starts_with("<?xml");
}

}  // namespace

void DemandSameAcrossPieces(std::string_view document, const PeerDocument& elements)
{
    const std::size_t choice =
        std::accumulate(document.begin(), document.end(), std::size_t{0},
                        [](std::size_t sum, char c) { return sum * 31 + static_cast<unsigned char>(c); });
    if (choice % kOneDocumentIn != 0 || !MayFollowComment(document)) {
        return;
    }
    const std::size_t boundary = choice / kOneDocumentIn % document.size();
    std::string text = "<!--";
    text.append(kPieceBytes - boundary - 7, 'x').append("-->").append(document);
    const LibraryLoad load = LoadText(text);
    Demand(load.code == result::Success, "a document in pieces is accepted");
    DemandSameElements(*load.document, *load.tree, elements);
    Demand(load.document->GenerateXML(false).Utf8() == text, "a document in pieces is written back byte for byte");
}

}  // namespace zupm::fuzz
