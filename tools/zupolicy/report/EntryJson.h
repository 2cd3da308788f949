/// One policy or task as JSON.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::tool {

/// As `show --json` prints an entry, with "schema" and "kind" first and without its version, which every edit changes.
void WriteEntryAsJson(std::ostream& out, const model::Entry& entry);
/// What `export --json` prints about an entry that it has written to a file.
void WriteWrittenEntryAsJson(std::ostream& out, const model::EntryId& id, const std::string& written);

}  // namespace zupm::tool
