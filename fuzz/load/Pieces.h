/// Documents that the parser gets in several pieces.
#pragma once

#include <string_view>

#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

/// Demands that a document, which was accepted and has these elements, still has them when a long comment before it
/// puts a boundary between two of the parser's pieces anywhere inside it. For some documents only: it takes time.
void DemandSameAcrossPieces(std::string_view document, const PeerDocument& elements);

}  // namespace zupm::fuzz
