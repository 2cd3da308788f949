// Any bytes as a policy file.
//
// Promises: what is accepted is written back byte for byte, libxml2 accepts it too and finds the same in it; a refusal
// has a documented code, a place and a reason, and leaves nothing loaded.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/load/ComponentLoad.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/LibraryLoad.h"
#include "fuzz/support/PeerComparison.h"
#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

namespace {

void Load(std::string_view bytes)
{
    const LibraryLoad load = LoadFromMemory(bytes);
    DemandSameFromComponent(bytes, load);
    if (!load.document) {
        return;
    }
    Demand(BytesOf(load) == bytes, "an untouched document is written back byte for byte");
    const PeerReading peer = ReadWithPeer(bytes);
    Demand(peer.document.has_value(), "libxml2 accepts what is accepted", peer.refusal);
    DemandSameElements(*load.document, *load.tree, *peer.document);
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zupm::fuzz::Load({reinterpret_cast<const char*>(data), size});
    return 0;
}
