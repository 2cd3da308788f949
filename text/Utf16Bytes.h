/// UTF-16 as bytes, and the signatures that a file may begin with.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zupm {

inline constexpr std::string_view kUtf8Signature = "\xEF\xBB\xBF";
inline constexpr std::string_view kUtf16LittleEndianSignature = "\xFF\xFE";
inline constexpr std::string_view kUtf16BigEndianSignature = "\xFE\xFF";

/// Which byte of a unit comes first: the low one or the high one.
enum class ByteOrder { LittleEndian, BigEndian };

/// The unit whose two bytes begin at `at`.
[[nodiscard]] constexpr char16_t UnitAt(std::string_view bytes, std::size_t at, ByteOrder order) noexcept
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char16_t>(order == ByteOrder::LittleEndian ? first | second << 8 : first << 8 | second);
}

/// Appends the bytes of a text's units.
inline void AppendUnits(std::u16string_view text, ByteOrder order, std::string& bytes)
{
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes.push_back(order == ByteOrder::LittleEndian ? low : high);
        bytes.push_back(order == ByteOrder::LittleEndian ? high : low);
    }
}

}  // namespace zupm
