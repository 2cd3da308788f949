/// What may be replaced by a new file.
#pragma once

#include <filesystem>

namespace zupm::tool {

/// True for a regular file and for a name that is free. False for devices, pipes and folders, and for a name that leads
/// to an open file of this process (`/dev/stdout`): whoever holds that file open would never see the new one.
[[nodiscard]] bool IsOrdinaryFile(std::filesystem::path path);

}  // namespace zupm::tool
