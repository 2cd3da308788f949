/// One line of a file, for a message.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zupm::tool {

/// A line of the file at a UTF-8 path, counted from 1, as UTF-8 without its end; bytes that are not valid stay as they
/// are. Nothing when the file cannot be read, is too large for a mere message, or does not have the line.
[[nodiscard]] std::optional<std::string> SourceLine(const std::string& path, std::uint32_t line) noexcept;

}  // namespace zupm::tool
