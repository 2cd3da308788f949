/// Documents that many parsers read one after another.
#pragma once

#include <string_view>

#include "fuzz/support/LibraryLoad.h"

namespace zupm::fuzz {

/// Demands that a document, which one parser read, is the same when parsers take over from one another every few
/// bytes, told of few open elements or of many: the same elements at the same places, or the same refusal. `bytes`
/// decide where they take over.
void DemandSameInWindows(std::string_view bytes, const LibraryLoad& whole);

}  // namespace zupm::fuzz
