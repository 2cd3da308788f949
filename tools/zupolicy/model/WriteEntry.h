/// Brings a policy or task of a loaded file from one state into another.
#pragma once

#include <zuPolicyManager/Client.h>

#include <cstddef>
#include <optional>

#include "tools/zupolicy/model/Change.h"

namespace zupm::model {

/// Makes this change in the document. Afterwards a lookup finds `after`. In a file that holds the entry twice, the ones
/// that would be found in its place are removed; returns how many. Nothing is written to disk. Throws Error; the
/// document is of no use then.
[[nodiscard]] std::size_t Write(const PolicyFile& file, const EntryChange& change, const std::optional<Entry>& after);

}  // namespace zupm::model
