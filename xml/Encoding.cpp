#include "xml/Encoding.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/AsciiCase.h"
#include "text/Utf.h"
#include "text/Utf16Bytes.h"
#include "xml/Latin1.h"

namespace AdvXMLParser {

namespace {

using enum UTF_ENCODINGS;
using zupm::ByteOrder;
using namespace std::string_view_literals;

/// Units converted at a time: large files are never held a third time as UTF-16.
constexpr std::size_t kPieceUnits = std::size_t{64} << 10;

constexpr ByteOrder OrderOf(UTF_ENCODINGS encoding)
{
    const bool isLittle = encoding == Utf16LittleEndian || encoding == Utf16LittleEndianSigned;
    return isLittle ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
}

constexpr std::string_view SignatureOf(UTF_ENCODINGS encoding)
{
    switch (encoding) {
        case Utf8Signed:
            return zupm::kUtf8Signature;
        case Utf16LittleEndianSigned:
            return zupm::kUtf16LittleEndianSignature;
        case Utf16BigEndianSigned:
            return zupm::kUtf16BigEndianSignature;
        default:
            return {};
    }
}

constexpr bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

std::optional<std::string> DecodeUtf16(std::string_view bytes, ByteOrder order)
{
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    std::string utf8;
    utf8.reserve(bytes.size() / 2);
    std::u16string piece;
    for (std::size_t at = 0; at < bytes.size();) {
        piece.clear();
        while (at < bytes.size() && (piece.size() < kPieceUnits || IsHighSurrogate(piece.back()))) {
            piece += zupm::UnitAt(bytes, at, order);
            at += 2;
        }
        const std::optional<std::string> converted = zupm::ToUtf8(piece);
        if (!converted) {
            return std::nullopt;
        }
        utf8.append(*converted);
    }
    return utf8;
}

constexpr bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

void EncodeUtf16(std::string_view utf8, ByteOrder order, std::string& out)
{
    out.reserve(out.size() + 2 * utf8.size());
    while (!utf8.empty()) {
        std::size_t length = std::min(utf8.size(), kPieceUnits);
        while (length < utf8.size() && IsContinuation(utf8[length])) {
            ++length;
        }
        zupm::AppendUnits(zupm::ToUtf16(utf8.substr(0, length)).value_or(std::u16string()), order, out);
        utf8.remove_prefix(length);
    }
}

}  // namespace

std::string_view DeclaredEncoding(std::string_view text) noexcept
{
    constexpr std::string_view kKey = "encoding";
    constexpr std::string_view kBlanks = " \t\r\n";
    if (!text.starts_with("<?xml") || text.size() < 6 || kBlanks.find(text[5]) == std::string_view::npos) {
        return {};
    }
    text = text.substr(0, text.find("?>"));
    const std::size_t key = text.find(kKey);
    const std::size_t quote = key == std::string_view::npos ? key : text.find_first_of("\"'", key + kKey.size());
    if (quote == std::string_view::npos) {
        return {};
    }
    const std::size_t close = text.find(text[quote], quote + 1);
    return close == std::string_view::npos ? std::string_view{} : text.substr(quote + 1, close - quote - 1);
}

bool IsDeclarable(std::string_view name, UTF_ENCODINGS encoding) noexcept
{
    switch (encoding) {
        case Utf8:
        case Utf8Signed:
            return zupm::EqualsIgnoringAsciiCase(name, "UTF-8"sv);
        case Iso8859_1:
            return zupm::EqualsIgnoringAsciiCase(name, "ISO-8859-1"sv);
        default:
            return zupm::EqualsIgnoringAsciiCase(name, "UTF-16"sv) ||
                   zupm::EqualsIgnoringAsciiCase(
                       name, OrderOf(encoding) == ByteOrder::LittleEndian ? "UTF-16LE"sv : "UTF-16BE"sv);
    }
}

UTF_ENCODINGS DetectEncoding(std::string_view bytes) noexcept
{
    for (const UTF_ENCODINGS encoding : {Utf8Signed, Utf16LittleEndianSigned, Utf16BigEndianSigned}) {
        if (bytes.starts_with(SignatureOf(encoding))) {
            return encoding;
        }
    }
    if (bytes.starts_with("<\0?\0"sv)) {
        return Utf16LittleEndian;
    }
    if (bytes.starts_with("\0<\0?"sv)) {
        return Utf16BigEndian;
    }
    return IsDeclarable(DeclaredEncoding(bytes), Iso8859_1) ? Iso8859_1 : Utf8;
}

std::optional<XmlText> Decode(std::string bytes, UTF_ENCODINGS encoding)
{
    return TryDecode(bytes, encoding);
}

std::optional<XmlText> TryDecode(std::string& bytes, UTF_ENCODINGS encoding)
{
    if (const std::string_view signature = SignatureOf(encoding); bytes.starts_with(signature)) {
        bytes.erase(0, signature.size());
    }
    switch (encoding) {
        case Utf8:
        case Utf8Signed:
            // Bytes under a declaration that will be refused need a text only for the refusal to have a place.
            if (zupm::FindInvalidUtf8(bytes) != zupm::kValid) {
                const std::string_view declared = DeclaredEncoding(bytes);
                if (declared.empty() || IsDeclarable(declared, encoding)) {
                    return std::nullopt;
                }
                bytes = DecodeLatin1(bytes);
            }
            break;
        case Iso8859_1:
            bytes = DecodeLatin1(bytes);
            break;
        default:
            std::optional<std::string> utf8 = DecodeUtf16(bytes, OrderOf(encoding));
            if (!utf8) {
                return std::nullopt;
            }
            bytes = std::move(*utf8);
    }
    return XmlText(std::move(bytes), encoding);
}

Position PositionOfInvalid(std::string_view bytes, UTF_ENCODINGS encoding)
{
    if (encoding == Utf8 || encoding == Utf8Signed) {
        return PositionOf(bytes, zupm::FindInvalidUtf8(bytes));
    }
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        units += zupm::UnitAt(bytes, at, OrderOf(encoding));
    }
    // Units that are all valid are followed by half of one.
    units.resize(std::min(units.size(), zupm::FindInvalidUtf16(units)));
    const std::string valid = zupm::ToUtf8Lossy(units);
    return PositionOf(valid, valid.size());
}

std::optional<std::string> Encode(std::string_view utf8, UTF_ENCODINGS encoding, bool writeSignature)
{
    std::string bytes(writeSignature ? SignatureOf(encoding) : std::string_view{});
    switch (encoding) {
        case Utf8:
        case Utf8Signed:
            return bytes.append(utf8);
        case Iso8859_1:
            return EncodeLatin1(utf8);
        default:
            EncodeUtf16(utf8, OrderOf(encoding), bytes);
            return bytes;
    }
}

}  // namespace AdvXMLParser
