/// Positions in messages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zupm::tool {

/// "file:line:column: message" taken apart; without a position everything is message.
struct FilePosition {
    std::optional<std::uint64_t> line;
    std::optional<std::uint64_t> column;
    std::string message;
};

/// Takes a message about `file` apart.
[[nodiscard]] FilePosition SplitPosition(std::string_view file, std::string_view text);

}  // namespace zupm::tool
