/// One policy or task as JSON, as `export` prints it.
#pragma once

#include <string>
#include <string_view>

#include "tools/zupolicy/model/EditRequest.h"
#include "tools/zupolicy/model/ReadEdits.h"

namespace zupm::model {

/// Reads the entry: the edit that creates it. Besides what `export` prints, an entry may have its version, as
/// `show --json` prints it, which is ignored; "schema" and "kind" may be missing. Refused is everything that ReadEdits
/// refuses. Throws EditsComplaint.
[[nodiscard]] EditRequest ReadEntry(std::string_view text);

}  // namespace zupm::model
