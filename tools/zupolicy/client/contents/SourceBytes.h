/// A policy file's bytes, as the tool reads them for itself.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace zupm::tool {

/// The component takes no larger file.
inline constexpr std::uint64_t kLargestSource = 0x7FFFFFFF;

/// The bytes of a regular file at a UTF-8 path. Whatever has the name instead, such as a pipe or a device, is refused
/// at once: reading it might wait for ever or never end. Throws Failure (FileError), also when the file gets shorter
/// meanwhile.
[[nodiscard]] std::string ReadBytes(const std::string& path);

/// The path in a form that the system opens however long it is.
[[nodiscard]] std::filesystem::path ForOpening(const std::filesystem::path& path);

}  // namespace zupm::tool
