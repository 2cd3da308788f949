/// Policy files of known size and shape, made once a run in a temporary folder.
#pragma once

#include <cstddef>
#include <string>

namespace zupm::bench {

/// A file of that many bytes or a little more: products of 40 settings each, and tasks. Made at the first call.
[[nodiscard]] const std::string& FileOfSize(std::size_t bytes, bool asUtf16);

/// A file with that many products (of `settings` settings in sections of 50) and tasks.
[[nodiscard]] const std::string& FileOfShape(int products, int settings, int tasks);

/// Where a benchmark may write.
[[nodiscard]] std::string ScratchFile(const std::string& name);

/// Names that are in every sample file.
[[nodiscard]] std::string ProductName(int number);
[[nodiscard]] std::string SettingName(int number);

}  // namespace zupm::bench
