/// Settings that an INI file cannot hold.
#pragma once

#include <functional>

#include "tools/zupolicy/client/Notices.h"
#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/model/Entry.h"

namespace zupm::tool {

/// Whether an export leaves out a setting of the task, or writes one that readers of the INI file do not find under its
/// name. Settings that are one there are another matter: the component reports those.
[[nodiscard]] bool HasIniLoss(const model::Entry& task);

/// Calls `take` for each such setting, in the order of the file.
void ForEachIniLoss(const PlacedContents& placed, const Target& task, const std::function<void(const Notice&)>& take);

}  // namespace zupm::tool
