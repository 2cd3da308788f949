#include "xml/scan/References.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

namespace AdvXMLParser {

namespace {

constexpr std::string_view kPredefined[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
constexpr std::uint32_t kBeyondUnicode = 0x110000;

/// The value of a digit of that base; the base when it is none.
constexpr std::uint32_t DigitValue(char c, std::uint32_t base)
{
    if (c >= '0' && c <= '9') {
        return static_cast<std::uint32_t>(c - '0');
    }
    const char lower = static_cast<char>(c | 0x20);
    return base == 16 && lower >= 'a' && lower <= 'f' ? static_cast<std::uint32_t>(lower - 'a') + 10 : base;
}

constexpr bool IsXmlCharacter(std::uint32_t character)
{
    if (character < 0x20) {
        return character == '\t' || character == '\n' || character == '\r';
    }
    return character < 0xD800 || (character >= 0xE000 && character < 0xFFFE) ||
           (character >= 0x10000 && character < kBeyondUnicode);
}

bool IsCharacterReferenceAt(const char* at) noexcept
{
    const bool isHex = at[2] == 'x';
    const std::uint32_t base = isHex ? 16 : 10;
    const char* const digits = at + (isHex ? 3 : 2);
    const char* digit = digits;
    std::uint32_t character = 0;
    for (std::uint32_t value = 0; (value = DigitValue(*digit, base)) < base; ++digit) {
        character = std::min(character * base + value, kBeyondUnicode);
    }
    return digit != digits && *digit == ';' && IsXmlCharacter(character);
}

}  // namespace

bool IsReferenceAt(const char* at) noexcept
{
    if (at[1] == '#') {
        return IsCharacterReferenceAt(at);
    }
    // The zero byte at the end of the text differs from every byte of a reference.
    return std::any_of(std::begin(kPredefined), std::end(kPredefined), [&](std::string_view reference) {
        return std::strncmp(at, reference.data(), reference.size()) == 0;
    });
}

}  // namespace AdvXMLParser
