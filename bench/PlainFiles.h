/// Files as plain bytes.
#pragma once

#include <cstddef>
#include <string>

namespace zupm::bench {

[[nodiscard]] std::size_t SizeOf(const std::string& path);
[[nodiscard]] std::string BytesOf(const std::string& path);

/// Writes a new file beside the target, flushes it and renames it over the target: the least that replacing a file
/// safely costs.
void ReplaceFlushed(const std::string& target, const std::string& bytes);

}  // namespace zupm::bench
