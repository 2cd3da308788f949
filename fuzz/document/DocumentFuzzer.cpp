// Edits on a document of the document library and on a plain tree.
//
// Promises: handles, and libxml2 reading the written text, agree with the tree. What XML cannot hold is refused and
// changes nothing. ISO-8859-1 holds the same document, unless there is a character that it cannot hold.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "fuzz/document/Session.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "text/Utf.h"
#include "xml/Encoding.h"

namespace zupm::fuzz {

namespace {

constexpr std::size_t kLongestText = 2048;
constexpr int kMostSteps = 40;
/// Copies of copies with long texts double a document at every step. From this size on it is no longer edited.
constexpr std::size_t kLargeDocument = std::size_t{256} << 10;

constexpr std::string_view kSample = "<a>\n  <Section name='1'>\n    <b/><b>x</b>\n  </Section>\n</a>\n";

/// Encodings are not the topic here: the sample replaces a text with a declaration and one that is not UTF-8.
std::string MakeText(Input& input)
{
    const bool isOwn = input.Flag();
    std::string text = input.Bytes(kLongestText);
    return isOwn && FindInvalidUtf8(text) == kValid && !text.starts_with("<?xml") ? text : std::string(kSample);
}

void DemandWrittenOut(const AdvXMLParser::Document& document, const ModelNode& model)
{
    const std::string text = document.GenerateXML(false).Utf8();
    const PeerReading peer = ReadWithPeer(text);
    Demand(peer.document.has_value(), "libxml2 accepts what is written out", peer.refusal);
    DemandModel(model, *peer.document);
    const LibraryLoad again = LoadText(text);
    Demand(again.code == result::Success, "what is written out is accepted", text);
    DemandSameElements(*again.document, *again.tree, *peer.document);
}

void DemandLatin1(const AdvXMLParser::Document& document, const ModelNode& model)
{
    constexpr auto kLatin1 = AdvXMLParser::UTF_ENCODINGS::Iso8859_1;
    const std::string text = document.GenerateXML(false).Utf8();
    const std::optional<std::string> bytes = AdvXMLParser::Encode(text, kLatin1, false);
    if (!bytes) {
        Demand(std::any_of(text.begin(), text.end(), [](char c) { return c < 0; }), "ASCII can be written", text);
        return;
    }
    const PeerReading peer = ReadWithPeer(AdvXMLParser::Decode(*bytes, kLatin1).value().Utf8());
    Demand(peer.document.has_value(), "what ISO-8859-1 holds is well-formed", peer.refusal);
    DemandModel(model, *peer.document);
}

void Edit(Input input)
{
    const std::string text = MakeText(input);
    const LibraryLoad load = LoadText(text);
    const PeerReading peer = load.document ? ReadWithPeer(text) : PeerReading{};
    if (!peer.document) {
        return;
    }
    Session session(input, *load.document, BuildModel(*peer.document));
    const auto isSmall = [&] { return load.document->GenerateXML(false).Utf8().size() < kLargeDocument; };
    for (int step = 0; step < kMostSteps && !input.IsAtEnd() && isSmall(); ++step) {
        session.Step();
    }
    session.DemandHandles();
    DemandWrittenOut(*load.document, session.Model());
    DemandLatin1(*load.document, session.Model());
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Edit(zupm::fuzz::Input(data, size));
    return 0;
}
