/// Lines and columns of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zupm::tool {

/// Where something is in a text; both count from 1, columns in characters.
struct Position {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

/// Counts lines and columns up to places that only ever lie further on, so all of them together cost one pass.
class PositionCounter {
public:
    explicit PositionCounter(std::string_view text) : m_text(text) {}

    /// The position of an offset that is not before the last one.
    [[nodiscard]] Position At(std::size_t offset);

private:
    std::string_view m_text;
    std::size_t m_at = 0;
    Position m_position;
};

}  // namespace zupm::tool
