/// The text of a document in pieces.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace AdvXMLParser {

/// Pieces of a text, in order. Each is valid UTF-8, and none is empty. They lie in a document and are valid until its
/// next edit.
using TextRuns = std::vector<std::string_view>;

/// The bytes of all pieces together.
[[nodiscard]] inline std::size_t SizeOf(std::span<const std::string_view> runs) noexcept
{
    std::size_t size = 0;
    for (const std::string_view run : runs) {
        size += run.size();
    }
    return size;
}

/// The text in one piece.
[[nodiscard]] inline std::string Joined(std::span<const std::string_view> runs)
{
    std::string text;
    text.reserve(SizeOf(runs));
    for (const std::string_view run : runs) {
        text.append(run);
    }
    return text;
}

}  // namespace AdvXMLParser
