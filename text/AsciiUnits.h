/// ASCII as bytes and as UTF-16, several characters at a time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zupm {

namespace ascii {

static_assert(std::endian::native == std::endian::little);

inline constexpr std::size_t kTogether = 4;

template <class Word>
[[nodiscard]] inline Word LoadWord(const void* at) noexcept
{
    Word word;
    std::memcpy(&word, at, sizeof(word));
    return word;
}

/// Four bytes as four units.
[[nodiscard]] inline std::uint64_t WidenWord(std::uint32_t bytes) noexcept
{
    std::uint64_t units = bytes;
    units = (units | units << 16) & 0x0000FFFF0000FFFFu;
    return (units | units << 8) & 0x00FF00FF00FF00FFu;
}

/// Not zero when four bytes and four units are not the same ASCII.
[[nodiscard]] inline std::uint64_t DifferenceOfWords(const char* bytes, const char16_t* units) noexcept
{
    const auto word = LoadWord<std::uint32_t>(bytes);
    return (WidenWord(word) ^ LoadWord<std::uint64_t>(units)) | (word & 0x80808080u);
}

}  // namespace ascii

/// Whether as many bytes as units are ASCII and the same text.
[[nodiscard]] inline bool IsSameAscii(const char* bytes, const char16_t* units, std::size_t size) noexcept
{
    std::uint64_t difference = 0;
    if (size < ascii::kTogether) {
        for (std::size_t at = 0; at < size; ++at) {
            const std::uint32_t byte = static_cast<unsigned char>(bytes[at]);
            difference |= (byte ^ units[at]) | (byte & 0x80u);
        }
        return difference == 0;
    }
    // The last four overlap those before them.
    const std::size_t last = size - ascii::kTogether;
    for (std::size_t at = 0; at < last; at += ascii::kTogether) {
        difference |= ascii::DifferenceOfWords(bytes + at, units + at);
    }
    return (difference | ascii::DifferenceOfWords(bytes + last, units + last)) == 0;
}

/// Writes bytes as units of the same values.
inline void WidenBytes(const char* bytes, std::size_t size, char16_t* units) noexcept
{
    if (size < ascii::kTogether) {
        for (std::size_t at = 0; at < size; ++at) {
            units[at] = static_cast<unsigned char>(bytes[at]);
        }
        return;
    }
    const auto widen = [&](std::size_t at) {
        const std::uint64_t wide = ascii::WidenWord(ascii::LoadWord<std::uint32_t>(bytes + at));
        std::memcpy(units + at, &wide, sizeof(wide));
    };
    const std::size_t last = size - ascii::kTogether;
    for (std::size_t at = 0; at < last; at += ascii::kTogether) {
        widen(at);
    }
    widen(last);
}

}  // namespace zupm
