/// Loading bytes as a client of the component does it.
#pragma once

#include <string_view>

#include "fuzz/support/LibraryLoad.h"

namespace zupm::fuzz {

/// Demands that a policy file object does with the bytes what the document library did: the same code, the same text,
/// nothing loaded after a failure, and the same bytes every time it is written.
void DemandSameFromComponent(std::string_view bytes, const LibraryLoad& load);

}  // namespace zupm::fuzz
