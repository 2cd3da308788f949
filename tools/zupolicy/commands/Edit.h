/// How `set` and `remove` begin and end.
#pragma once

#include <optional>
#include <string>

#include "Streams.h"
#include "client/PolicyFile.h"
#include "commands/Options.h"
#include "file/WriteTarget.h"
#include "model/Change.h"

namespace zupm::tool {

/// What an edit of `file` will write, to be had before the file is read: nothing for a dry run, and for a file that is
/// not there. Throws as WriteTarget does.
[[nodiscard]] std::optional<WriteTarget> TargetOf(const std::string& file, const EditOptions& options);

/// Writes the edited file where the options say (nowhere in a dry run, nor in place when nothing changed), then prints
/// the change for a dry run or as JSON. Throws Failure (Changed), unless forced, when what would be overwritten is not
/// what it was.
void FinishEdit(PolicyFile& file, const std::optional<WriteTarget>& target, Change change, const EditOptions& options,
                Streams streams);

}  // namespace zupm::tool
