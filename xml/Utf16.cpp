#include "xml/Utf16.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/Utf.h"

namespace AdvXMLParser {

namespace {

/// Units converted at a time: a large file is never held a third time as UTF-16.
constexpr std::size_t kPieceUnits = std::size_t{64} << 10;

char16_t UnitAt(std::string_view bytes, std::size_t at, bool littleEndian) noexcept
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char16_t>(littleEndian ? first | second << 8 : first << 8 | second);
}

constexpr bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

/// Appends units as UTF-8, up to the first that is not valid; whether all are.
bool AppendUtf8(std::u16string_view units, std::string& utf8)
{
    const std::size_t valid = std::min(units.size(), zupm::FindInvalidUtf16(units));
    utf8.append(zupm::ToUtf8(units.substr(0, valid)).value_or(std::string()));
    return valid == units.size();
}

bool Decode(std::string& bytes, bool littleEndian)
{
    const std::size_t wholeUnits = bytes.size() - bytes.size() % 2;
    std::string utf8;
    utf8.reserve(bytes.size() / 2);
    std::u16string piece;
    bool isValid = true;
    for (std::size_t at = 0; isValid && at < wholeUnits;) {
        piece.clear();
        while (at < wholeUnits && (piece.size() < kPieceUnits || IsHighSurrogate(piece.back()))) {
            piece += UnitAt(bytes, at, littleEndian);
            at += 2;
        }
        isValid = AppendUtf8(piece, utf8);
    }
    isValid = isValid && wholeUnits == bytes.size();
    bytes = std::move(utf8);
    return isValid;
}

void AppendUnits(std::u16string_view units, bool littleEndian, std::string& bytes)
{
    for (const char16_t unit : units) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    }
}

constexpr bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

void Encode(std::string& text, std::string_view signature, bool littleEndian)
{
    std::string bytes(signature);
    bytes.reserve(bytes.size() + 2 * text.size());
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t length = std::min(rest.size(), kPieceUnits);
        while (length < rest.size() && IsContinuation(rest[length])) {
            ++length;
        }
        AppendUnits(zupm::ToUtf16(rest.substr(0, length)).value_or(std::u16string()), littleEndian, bytes);
        rest.remove_prefix(length);
    }
    text = std::move(bytes);
}

}  // namespace

bool DecodeUtf16LittleEndian(std::string& bytes)
{
    return Decode(bytes, true);
}

bool DecodeUtf16BigEndian(std::string& bytes)
{
    return Decode(bytes, false);
}

bool EncodeUtf16LittleEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, true);
    return true;
}

bool EncodeUtf16BigEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, false);
    return true;
}

}  // namespace AdvXMLParser
