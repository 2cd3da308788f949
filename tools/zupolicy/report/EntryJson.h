/// One policy or task as JSON.
#pragma once

#include <iosfwd>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::tool {

/// As `show --json` prints an entry, with "schema" and "kind" first and without its version, which every edit changes.
void WriteEntryAsJson(std::ostream& out, const model::Entry& entry);

}  // namespace zupm::tool
