/// Lines and columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace AdvXMLParser {

/// A place in a text, counted from 1. A column counts characters; CR LF, CR and LF each end a line.
struct Position {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

[[nodiscard]] Position PositionOf(std::string_view utf8, std::size_t offset) noexcept;

}  // namespace AdvXMLParser
