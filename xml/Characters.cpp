#include "xml/Characters.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "text/Utf.h"

namespace AdvXMLParser {

namespace {

constexpr bool IsForbiddenUnit(char16_t unit)
{
    return (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
}

constexpr bool IsPlainNameStart(char16_t unit)
{
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_';
}

constexpr bool IsPlainNameUnit(char16_t unit)
{
    return IsPlainNameStart(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
}

/// One code point of valid UTF-8, as one or two units.
struct Units {
    char16_t first;
    char16_t second;  ///< 0 for a code point of one unit
    std::size_t bytes;
};

Units DecodeOne(std::string_view utf8) noexcept
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(utf8[i])); };
    const std::uint32_t lead = byte(0);
    if (lead < 0x80) {
        return {static_cast<char16_t>(lead), 0, 1};
    }
    if (lead < 0xE0) {
        return {static_cast<char16_t>((lead & 0x1F) << 6 | (byte(1) & 0x3F)), 0, 2};
    }
    if (lead < 0xF0) {
        return {static_cast<char16_t>((lead & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F)), 0, 3};
    }
    const std::uint32_t offset =
        ((lead & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F)) - 0x10000;
    return {static_cast<char16_t>(0xD800 + (offset >> 10)), static_cast<char16_t>(0xDC00 + (offset & 0x3FF)), 4};
}

}  // namespace

bool IsXmlText(std::u16string_view text) noexcept
{
    return std::none_of(text.begin(), text.end(), IsForbiddenUnit) && zupm::FindInvalidUtf16(text) == zupm::kValid;
}

bool IsPlainName(std::u16string_view text) noexcept
{
    return !text.empty() && IsPlainNameStart(text.front()) && std::all_of(text.begin(), text.end(), IsPlainNameUnit);
}

bool EqualsUtf16(std::string_view utf8, std::u16string_view utf16) noexcept
{
    while (!utf8.empty()) {
        const Units units = DecodeOne(utf8);
        const std::size_t length = units.second != 0 ? 2 : 1;
        if (utf16.size() < length || utf16[0] != units.first || (length == 2 && utf16[1] != units.second)) {
            return false;
        }
        utf8.remove_prefix(units.bytes);
        utf16.remove_prefix(length);
    }
    return utf16.empty();
}

}  // namespace AdvXMLParser
