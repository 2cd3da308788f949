/// How `set` and `remove` end.
#pragma once

#include "Streams.h"
#include "client/PolicyFile.h"
#include "commands/Options.h"
#include "model/Change.h"

namespace zupm::tool {

/// Writes the edited file where the options say (nowhere in a dry run, nor in place when nothing changed), then prints
/// the change for a dry run or as JSON.
void FinishEdit(PolicyFile& file, Change change, const EditOptions& options, Streams streams);

}  // namespace zupm::tool
