/// The value of ZUPOLICY_LOG: `<level>[:<file>]`.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zupm {

struct LogSettings {
    std::int32_t level = 0;  ///< messages up to this level are written; 0: none
    std::string_view file;   ///< in the value; empty: standard error

    friend bool operator==(const LogSettings&, const LogSettings&) = default;
};

/// Reads a value; an empty one means level 0. Nothing when the level is missing or is not up to nine digits. The file
/// is whatever follows the first colon, a drive and its colon included.
[[nodiscard]] std::optional<LogSettings> ParseLogSettings(std::string_view value) noexcept;

}  // namespace zupm
