/// New objects of the component. They are made by the component beside this program when there is one, so it need not
/// be registered.
#pragma once

#include <zuPolicyManager/Client.h>

#include <string>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// A file object for a path, and nothing loaded into it: `object`, or a new one when that is null. Throws Error, or
/// tool::Failure, also for a path that is not valid UTF-8.
[[nodiscard]] PolicyFile MakeFile(const std::string& path, ComPtr<IPolicyFile> object = nullptr);

/// A policy without sections, and a task with the fields of NewEntry; PolicyFile::Add puts them into a file. Each
/// throws Error, or tool::Failure.
[[nodiscard]] Policy MakePolicy(const EntryId& id);
[[nodiscard]] Task MakeTask(const EntryId& id);

}  // namespace zupm::model
