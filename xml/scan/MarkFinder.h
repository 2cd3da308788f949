/// Stage one of the scanner: where in a text the characters are that stage two looks at.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace AdvXMLParser {

/// A piece of a text that ends in a zero byte.
struct TextPiece {
    const char* text;  ///< the whole text
    std::uint32_t begin;
    std::uint32_t end;
};

/// One form of stage one. Every form finds the same; they differ in the instructions that they need.
struct MarkFinder {
    /// What a finder may write after the last mark.
    static constexpr std::uint32_t kSlack = 16;

    /// Writes the offset of every '<', '>', '&', '"' and '\'' in the piece; where the last one ends. Nothing when a
    /// character that has bytes in the piece is not valid UTF-8 or is none that XML can hold. `marks` has room for as
    /// many marks as the piece has bytes, and for kSlack more.
    using Find = std::uint32_t* (*)(const TextPiece& piece, std::uint32_t* marks) noexcept;

    std::string_view name;
    Find find;
};

/// What a processor can do beyond what every processor of its kind can.
struct Processor {
    bool hasAvx2 = false;
    bool hasBmi = false;
};

[[nodiscard]] Processor ThisProcessor() noexcept;

/// The forms that a processor can run, the fastest last.
[[nodiscard]] std::span<const MarkFinder> MarkFindersFor(const Processor& processor) noexcept;

/// The fastest form that this processor can run.
[[nodiscard]] const MarkFinder& FastestMarkFinder() noexcept;

}  // namespace AdvXMLParser
