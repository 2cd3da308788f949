/// What a file is besides its bytes.
#pragma once

#include <sys/stat.h>

#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Gives the open file `to`, created for its owner alone, the owner, group, extended attributes (access lists
/// included) and mode of the open file `from`, whose status is given. Nobody who may not open `from` can
/// open `to` at any moment. Fails when the file system knows something that cannot be kept: OwnerNotKept when the owner
/// or group may not be given to the file.
[[nodiscard]] result::Code CopyMetadata(int from, const struct stat& status, int to);

}  // namespace zupm::native
