/// What libxml2 reads in a policy file about the known names.
#pragma once

#include "fuzz/edit/Snapshot.h"
#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

/// Demands that the document has the products and tasks of a snapshot with the same settings, and no others of the
/// known names.
void DemandSameInPeer(const PeerDocument& document, const Snapshot& snapshot, const Known& known);

}  // namespace zupm::fuzz
