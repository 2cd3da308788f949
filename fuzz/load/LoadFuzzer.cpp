// Any bytes as a policy file.
//
// Promises: what is accepted is written back byte for byte, and libxml2 accepts it and finds the same in it, in any
// number of pieces. A refusal has a documented code, a place and a reason, and leaves nothing loaded. When a document
// is so simple that none of our own rules can refuse it, libxml2 refuses it too. The gate alone, with any number of
// parsers, finds the same elements or gives the same refusal.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/load/ComponentLoad.h"
#include "fuzz/load/Pieces.h"
#include "fuzz/load/Windows.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

namespace {

/// Whether only XML itself can be the reason of a refusal. Our own rules refuse declarations of the encoding, the
/// version and entities; and the libraries follow different editions of XML for names that are not ASCII.
bool IsPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c > 0; }) && bytes.find("<!D") == bytes.npos &&
           !bytes.starts_with("<?xml");
}

void Load(std::string_view bytes)
{
    const LibraryLoad load = LoadFromMemory(bytes);
    DemandSameFromComponent(bytes, load);
    DemandSameInWindows(bytes, load);
    if (!load.document) {
        Demand(!IsPlain(bytes) || !ReadWithPeer(bytes).document, "libxml2 refuses what is refused");
        return;
    }
    Demand(BytesOf(load) == bytes, "an untouched document is written back byte for byte");
    const PeerReading peer = ReadWithPeer(bytes);
    Demand(peer.document.has_value(), "libxml2 accepts what is accepted", peer.refusal);
    DemandSameElements(*load.document, *load.tree, *peer.document);
    DemandSameAcrossPieces(bytes, *peer.document);
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Load({reinterpret_cast<const char*>(data), size});
    return 0;
}
