/// A file as it is now.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zupm::tool {

/// All bytes of a file; nothing when there is none, when it cannot be read, and for what is no file: that is never
/// waited for.
[[nodiscard]] std::optional<std::string> BytesOf(const std::filesystem::path& path);

}  // namespace zupm::tool
