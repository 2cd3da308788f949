/// What characters of XML are in UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>

namespace AdvXMLParser {

namespace characters {

[[nodiscard]] constexpr bool IsContinuation(char byte) noexcept
{
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// How many bytes a character with that first byte has. Bytes that begin none count as one.
[[nodiscard]] constexpr std::uint32_t LengthFor(unsigned char lead) noexcept
{
    if (lead < 0xC0) {
        return 1;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// The second byte of a character keeps out overlong forms, surrogates and what is beyond U+10FFFF.
[[nodiscard]] constexpr bool MayFollow(unsigned char lead, unsigned char second) noexcept
{
    switch (lead) {
        case 0xE0:
            return second >= 0xA0;
        case 0xED:
            return second < 0xA0;
        case 0xF0:
            return second >= 0x90;
        case 0xF4:
            return second < 0x90;
        default:
            return lead >= 0xC2 && lead < 0xF5;
    }
}

/// U+FFFE and U+FFFF: the two that XML excludes beside control characters and surrogates.
[[nodiscard]] constexpr bool IsNoCharacter(const char* at) noexcept
{
    return static_cast<unsigned char>(at[0]) == 0xEF && static_cast<unsigned char>(at[1]) == 0xBF &&
           static_cast<unsigned char>(at[2]) >= 0xBE;
}

}  // namespace characters

/// How many bytes the character at `at` has; 0 when XML holds no such character or the bytes are no UTF-8. Reads no
/// byte after the first one that is wrong.
[[nodiscard]] constexpr std::uint32_t CharacterLengthAt(const char* at) noexcept
{
    const auto lead = static_cast<unsigned char>(*at);
    if (lead < 0x80) {
        return lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r' ? 1 : 0;
    }
    const std::uint32_t length = characters::LengthFor(lead);
    if (!characters::IsContinuation(at[1]) || !characters::MayFollow(lead, static_cast<unsigned char>(at[1]))) {
        return 0;
    }
    for (std::uint32_t byte = 2; byte < length; ++byte) {
        if (!characters::IsContinuation(at[byte])) {
            return 0;
        }
    }
    return length == 3 && characters::IsNoCharacter(at) ? 0 : length;
}

/// Where the character begins that has bytes on both sides of `at`; `at` itself when there is none.
[[nodiscard]] constexpr const char* BeginOfCharacterAcross(const char* text, const char* at) noexcept
{
    constexpr std::ptrdiff_t kMostBefore = 3;
    for (std::ptrdiff_t back = 1; back <= kMostBefore && back <= at - text; ++back) {
        if (!characters::IsContinuation(at[-back])) {
            const std::uint32_t length = characters::LengthFor(static_cast<unsigned char>(at[-back]));
            return static_cast<std::ptrdiff_t>(length) > back ? at - back : at;
        }
    }
    return at;
}

}  // namespace AdvXMLParser
