/// How `set` and `remove` begin and end.
#pragma once

#include <string>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/Change.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// Loads the file to be edited, and locks it unless the result is written to another path. A
/// dry run opens it as the edit does, so it fails where the edit fails.
[[nodiscard]] PolicyFile OpenToEdit(const std::string& file, const EditOptions& options);

/// Writes the edited file where the options name it (not in a dry run; FILE itself only when it changed), then prints
/// the change for a dry run or as JSON. Throws Failure: Changed, unless forced, when the file is no longer the one that
/// was loaded; Written when it is written and the change cannot be printed.
void FinishEdit(PolicyFile& file, Change change, const EditOptions& options, Streams streams);

}  // namespace zupm::tool
