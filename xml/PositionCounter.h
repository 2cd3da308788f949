/// Lines and columns of many places in one pass.
#pragma once

#include <cstddef>
#include <string_view>

#include "xml/Position.h"

namespace AdvXMLParser {

/// Counts lines and columns, as PositionOf does, up to places that only ever lie further on.
class PositionCounter {
public:
    explicit PositionCounter(std::string_view utf8) noexcept : m_text(utf8) {}

    /// The position of an offset that is not before the last one and lies in the text.
    [[nodiscard]] Position At(std::size_t offset) noexcept;

private:
    void CountPlainLines(std::string_view read) noexcept;
    void CountLines(std::string_view read) noexcept;

    std::string_view m_text;
    std::size_t m_at = 0;
    Position m_position;
};

}  // namespace AdvXMLParser
