#include "xml/Utf16.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/Utf.h"
#include "text/Utf16Bytes.h"

namespace AdvXMLParser {

namespace {

using zupm::ByteOrder;

/// Units converted at a time: a large file is never held a third time as UTF-16.
constexpr std::size_t kPieceUnits = std::size_t{64} << 10;

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

bool Decode(std::string& bytes, ByteOrder order)
{
    const std::size_t wholeUnits = bytes.size() - bytes.size() % 2;
    std::string utf8;
    utf8.reserve(bytes.size() / 2);
    std::u16string piece;
    bool isValid = true;
    for (std::size_t at = 0; isValid && at < wholeUnits;) {
        piece.clear();
        while (at < wholeUnits && (piece.size() < kPieceUnits || IsHighSurrogate(piece.back()))) {
            piece += zupm::UnitAt(bytes, at, order);
            at += 2;
        }
        isValid = AppendUtf8(piece, utf8);
    }
    isValid = isValid && wholeUnits == bytes.size();
    bytes = std::move(utf8);
    return isValid;
}

constexpr bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

void Encode(std::string& text, std::string_view signature, ByteOrder order)
{
    std::string bytes(signature);
    bytes.reserve(bytes.size() + 2 * text.size());
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t length = std::min(rest.size(), kPieceUnits);
        while (length < rest.size() && IsContinuation(rest[length])) {
            ++length;
        }
        zupm::AppendUnits(zupm::ToUtf16(rest.substr(0, length)).value_or(std::u16string()), order, bytes);
        rest.remove_prefix(length);
    }
    text = std::move(bytes);
}

}  // namespace

bool DecodeUtf16LittleEndian(std::string& bytes)
{
    return Decode(bytes, ByteOrder::LittleEndian);
}

bool DecodeUtf16BigEndian(std::string& bytes)
{
    return Decode(bytes, ByteOrder::BigEndian);
}

bool EncodeUtf16LittleEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, ByteOrder::LittleEndian);
    return true;
}

bool EncodeUtf16BigEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, ByteOrder::BigEndian);
    return true;
}

}  // namespace AdvXMLParser
