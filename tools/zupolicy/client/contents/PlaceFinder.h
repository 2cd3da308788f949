/// Lines and columns of a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zupm::tool {

/// Both count from 1, columns in characters.
struct LineAndColumn {
    std::uint64_t line = 1;
    std::uint64_t column = 1;
};

/// Finds the places of bytes in one pass: each call asks for the same byte as the call before, or a later one.
class PlaceFinder {
public:
    /// UTF-8, which must outlive the finder. CR LF, CR and LF each end a line.
    explicit PlaceFinder(std::string_view text) : m_text(text) {}

    [[nodiscard]] LineAndColumn PlaceOf(std::size_t offset);

private:
    std::string_view m_text;
    std::size_t m_at = 0;
    LineAndColumn m_place;
};

}  // namespace zupm::tool
