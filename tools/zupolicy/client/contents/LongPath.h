/// Paths of any length.
#pragma once

#include <filesystem>

namespace zupm::tool {

/// The path in a form that the system opens however long it is.
[[nodiscard]] std::filesystem::path ForOpening(const std::filesystem::path& path);

}  // namespace zupm::tool
