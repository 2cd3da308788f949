/// Fields that a task gets by being written.
#pragma once

#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::tool {

/// What to say about tasks that are about to be written: the component writes the word "invalid" into each field that
/// the file does not have. `path` is the file as it was before, and `tasks` are as they are written; their
/// sections do not matter. One line for each task of which that is true; none when the file cannot be read again.
[[nodiscard]] std::vector<std::string> NotesOnFields(const std::string& path, const std::vector<model::Entry>& tasks);

}  // namespace zupm::tool
