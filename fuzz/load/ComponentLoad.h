/// Loads bytes as a client of the component does.
#pragma once

#include <string_view>

#include "fuzz/support/LibraryLoad.h"

namespace zupm::fuzz {

/// Demands that a policy file object treats the bytes as the document library did: the same code, the same text,
/// nothing loaded after a failure, and the same bytes at every write.
void DemandSameFromComponent(std::string_view bytes, const LibraryLoad& load);

}  // namespace zupm::fuzz
