/// What libxml2's reading of a policy file says about everything known.
#pragma once

#include "fuzz/edit/Snapshot.h"
#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

/// Demands that the products and tasks of a snapshot are in the document with the settings that the snapshot has, and
/// that it has no further ones among the known.
void DemandSameInPeer(const PeerDocument& document, const Snapshot& snapshot, const Known& known);

}  // namespace zupm::fuzz
