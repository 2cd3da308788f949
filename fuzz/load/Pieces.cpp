#include "fuzz/load/Pieces.h"

#include <cstddef>
#include <numeric>
#include <optional>
#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "xml/Encoding.h"

namespace zupm::fuzz {

namespace {

/// The length of the parser's pieces while no token is longer.
constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

constexpr std::size_t kOneDocumentIn = 32;

/// A comment may precede only UTF-8 without a declaration and without a signature.
bool MayFollowComment(std::string_view document)
{
    return AdvXMLParser::DetectEncoding(document) == AdvXMLParser::UTF_ENCODINGS::Utf8 &&
           !document.starts_with("<?xml");
}

/// The document after a comment of that number of bytes. Any boundary in the comment cuts a character.
std::string AfterComment(std::string_view document, std::size_t length)
{
    constexpr std::string_view kBegin = "<!--";
    constexpr std::string_view kEnd = "-->";
    constexpr std::string_view kFourBytes = "\xF0\x9F\x98\x80";
    std::string text(kBegin);
    std::size_t left = length - kBegin.size() - kEnd.size();
    text.append(left % kFourBytes.size(), 'x');
    for (left /= kFourBytes.size(); left > 0; --left) {
        text.append(kFourBytes);
    }
    return text.append(kEnd).append(document);
}

/// Encodings are converted in pieces as well.
void DemandSameInUtf16(const std::string& text)
{
    constexpr auto kEncoding = AdvXMLParser::UTF_ENCODINGS::Utf16BigEndianSigned;
    const std::optional<std::string> bytes = AdvXMLParser::Encode(text, kEncoding, true);
    const std::optional<AdvXMLParser::XmlText> decoded = AdvXMLParser::Decode(bytes.value(), kEncoding);
    Demand(decoded && decoded->Utf8() == text, "UTF-16 holds the same text");
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
    const std::string text = AfterComment(document, kPieceBytes - boundary);
    const LibraryLoad load = LoadText(text);
    Demand(load.code == result::Success, "a document in pieces is accepted");
    DemandSameElements(*load.document, *load.tree, elements);
    Demand(load.document->GenerateXML(false).Utf8() == text, "a document in pieces is written back byte for byte");
    DemandSameInUtf16(text);
}

}  // namespace zupm::fuzz
