/// Documents that the gate reads alone, with many parsers one after another.
#pragma once

#include <string_view>

#include "fuzz/support/LibraryLoad.h"

namespace zupm::fuzz {

/// Demands that a document is the same when only the gate reads it, a new parser takes over every few bytes and knows
/// few or many of the open elements: the same elements at the same places, or the same refusal. `bytes` decide where a
/// new parser takes over.
void DemandSameInWindows(std::string_view bytes, const LibraryLoad& whole);

}  // namespace zupm::fuzz
