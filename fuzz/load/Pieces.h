/// Documents that the parser reads in several pieces.
#pragma once

#include <string_view>

#include "fuzz/support/PeerDocument.h"

namespace zupm::fuzz {

/// Demands that an accepted document still has these elements when a long comment before it moves a boundary between
/// two of the parser's pieces into it. Checks only some documents, because it takes time.
void DemandSameAcrossPieces(std::string_view document, const PeerDocument& elements);

}  // namespace zupm::fuzz
