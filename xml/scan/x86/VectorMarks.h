/// Stage one with the vectors of x86-64.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "xml/scan/MarkFinder.h"

namespace AdvXMLParser {

/// As MarkFinder::Find.
[[nodiscard]] std::uint32_t* FindMarksWithSse2(const TextPiece& piece, std::uint32_t* marks) noexcept;
/// As MarkFinder::Find, for processors with AVX2 and BMI only.
[[nodiscard]] std::uint32_t* FindMarksWithAvx2(const TextPiece& piece, std::uint32_t* marks) noexcept;

/// Bytes that are looked at together.
inline constexpr std::uint32_t kBlockBytes = 64;

/// The number of bits: without the instruction for it, which std::popcount calls a library for where there is none.
[[nodiscard]] constexpr std::uint32_t CountBits(std::uint64_t bits) noexcept
{
    bits -= bits >> 1 & 0x5555555555555555u;
    bits = (bits & 0x3333333333333333u) + (bits >> 2 & 0x3333333333333333u);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
    return static_cast<std::uint32_t>(bits * 0x0101010101010101u >> 56);
}

/// Writes the offsets of a block's marks, given as bits; where the last one ends. Blocks with up to eight marks, which
/// most are, are written without a branch for each.
[[gnu::always_inline]] inline std::uint32_t* WriteMarks(std::uint64_t bits, std::uint32_t block,
                                                        std::uint32_t* marks) noexcept
{
    constexpr std::uint32_t kAtOnce = 8;
    static_assert(kAtOnce <= MarkFinder::kSlack);
    std::uint32_t* const end = marks + CountBits(bits);
    while (bits != 0) {
        for (std::uint32_t i = 0; i < kAtOnce; ++i) {
            *marks++ = block + static_cast<std::uint32_t>(std::countr_zero(bits));
            bits &= bits - 1;
        }
    }
    return end;
}

}  // namespace AdvXMLParser
