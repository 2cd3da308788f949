#include "xml/Encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "text/AsciiCase.h"
#include "text/Utf.h"
#include "text/Utf16Bytes.h"
#include "xml/Latin1.h"
#include "xml/Utf16.h"

namespace AdvXMLParser {

namespace {

using namespace std::string_view_literals;
using enum UTF_ENCODINGS;

/// How "<?" begins a file in the encodings that hold ASCII as it is. The declaration then says which of them it is.
constexpr std::string_view kAsciiOpening = "<?";

/// Everything that the library knows of one encoding.
struct EncodingRow {
    UTF_ENCODINGS encoding;
    std::array<std::string_view, 2> names;  ///< what a declaration may call it
    std::string_view signature;             ///< the bytes that begin the file; empty for a file without
    std::string_view opening;               ///< "<?" in it: how a file without a signature is recognised
    /// Turns bytes without a signature into UTF-8. False when they are not valid; what is left is then the valid text
    /// before the first fault.
    bool (*decode)(std::string& bytes);
    /// Turns UTF-8 into bytes that begin with the signature; false when the encoding cannot hold the text.
    bool (*encode)(std::string& text, std::string_view signature);
};

constexpr std::array kUtf8Names = {"UTF-8"sv, ""sv};
constexpr std::array kLittleEndianNames = {"UTF-16"sv, "UTF-16LE"sv};
constexpr std::array kBigEndianNames = {"UTF-16"sv, "UTF-16BE"sv};

bool DecodeUtf8(std::string& bytes);
bool EncodeUtf8(std::string& text, std::string_view signature);

/// In the order of the values.
constexpr std::array kEncodings = {
    EncodingRow{Utf16LittleEndianSigned, kLittleEndianNames, zupm::kUtf16LittleEndianSignature, "<\0?\0"sv,
                DecodeUtf16LittleEndian, EncodeUtf16LittleEndian},
    EncodingRow{Utf16BigEndianSigned, kBigEndianNames, zupm::kUtf16BigEndianSignature, "\0<\0?"sv, DecodeUtf16BigEndian,
                EncodeUtf16BigEndian},
    EncodingRow{Utf8Signed, kUtf8Names, zupm::kUtf8Signature, kAsciiOpening, DecodeUtf8, EncodeUtf8},
    EncodingRow{Utf8, kUtf8Names, "", kAsciiOpening, DecodeUtf8, EncodeUtf8},
    EncodingRow{Iso8859_1, {"ISO-8859-1"sv, ""sv}, "", kAsciiOpening, DecodeLatin1, EncodeLatin1},
    EncodingRow{Utf16LittleEndian, kLittleEndianNames, "", "<\0?\0"sv, DecodeUtf16LittleEndian,
                EncodeUtf16LittleEndian},
    EncodingRow{Utf16BigEndian, kBigEndianNames, "", "\0<\0?"sv, DecodeUtf16BigEndian, EncodeUtf16BigEndian},
};

constexpr std::size_t IndexOf(UTF_ENCODINGS encoding)
{
    return static_cast<std::size_t>(encoding) - 1;
}

constexpr bool AreInOrder()
{
    for (std::size_t index = 0; index < kEncodings.size(); ++index) {
        if (IndexOf(kEncodings.at(index).encoding) != index) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());
static_assert(kEncodings.size() == IndexOf(kLastEncoding) + 1, "a row for each encoding");

/// An encoding without a row ends the program.
const EncodingRow& RowOf(UTF_ENCODINGS encoding) noexcept
{
    return kEncodings.at(IndexOf(encoding));
}

/// The encoding that an XML declaration at the start of a text names; empty without one.
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

bool DecodeUtf8(std::string& bytes)
{
    const std::size_t invalid = zupm::FindInvalidUtf8(bytes);
    if (invalid == zupm::kValid) {
        return true;
    }
    // Bytes under a declaration that the parser will refuse need a text only so that the refusal has a place.
    if (const std::string_view name = DeclaredEncoding(bytes); !name.empty() && !IsDeclarable(name, Utf8)) {
        return DecodeLatin1(bytes);
    }
    bytes.resize(invalid);
    return false;
}

bool EncodeUtf8(std::string& text, std::string_view signature)
{
    text.insert(0, signature);
    return true;
}

std::optional<XmlText> DecodedText(const EncodingRow& row, std::string bytes, Position* invalid)
{
    if (!row.decode(bytes)) {
        if (invalid != nullptr) {
            *invalid = PositionOf(bytes, bytes.size());
        }
        return std::nullopt;
    }
    return XmlText(std::move(bytes), row.encoding);
}

bool IsRecognised(const EncodingRow& row, std::string_view bytes) noexcept
{
    if (!row.signature.empty()) {
        return bytes.starts_with(row.signature);
    }
    return bytes.starts_with(row.opening) &&
           (row.opening != kAsciiOpening || IsDeclarable(DeclaredEncoding(bytes), row.encoding));
}

}  // namespace

bool IsDeclarable(std::string_view name, UTF_ENCODINGS encoding) noexcept
{
    const auto& names = RowOf(encoding).names;
    return !name.empty() && std::any_of(names.begin(), names.end(),
                                        [&](auto known) { return zupm::EqualsIgnoringAsciiCase(name, known); });
}

UTF_ENCODINGS DetectEncoding(std::string_view bytes) noexcept
{
    const auto* const row = std::find_if(kEncodings.begin(), kEncodings.end(),
                                         [&](const EncodingRow& known) { return IsRecognised(known, bytes); });
    return row == kEncodings.end() ? Utf8 : row->encoding;
}

std::string_view SignatureOf(UTF_ENCODINGS encoding) noexcept
{
    return RowOf(encoding).signature;
}

std::optional<zupm::ByteOrder> Utf16OrderOf(UTF_ENCODINGS encoding) noexcept
{
    const EncodingRow& row = RowOf(encoding);
    if (row.opening == kAsciiOpening) {
        return std::nullopt;
    }
    return row.opening.starts_with('<') ? zupm::ByteOrder::LittleEndian : zupm::ByteOrder::BigEndian;
}

bool HoldsEveryCharacter(UTF_ENCODINGS encoding) noexcept
{
    return encoding != Iso8859_1;
}

std::optional<XmlText> Decode(std::string bytes, UTF_ENCODINGS encoding, Position* invalid)
{
    std::optional<XmlText> text = DecodeUnchecked(std::move(bytes), encoding, invalid);
    return text && Check(*text, invalid) ? std::move(text) : std::nullopt;
}

std::optional<XmlText> DecodeUnchecked(std::string bytes, UTF_ENCODINGS encoding, Position* invalid)
{
    const EncodingRow& row = RowOf(encoding);
    if (bytes.starts_with(row.signature)) {
        bytes.erase(0, row.signature.size());
    }
    if (row.decode == DecodeUtf8) {
        return XmlText::Unchecked(std::move(bytes), encoding);
    }
    return DecodedText(row, std::move(bytes), invalid);
}

bool Check(XmlText& text, Position* invalid)
{
    if (text.IsChecked()) {
        return true;
    }
    const EncodingRow& row = RowOf(*text.Encoding());
    std::optional<XmlText> checked = DecodedText(row, std::move(text).TakeUtf8(), invalid);
    const bool isValid = checked.has_value();
    text = std::move(checked).value_or(XmlText());
    return isValid;
}

std::optional<std::string> Encode(std::string text, UTF_ENCODINGS encoding, bool writeSignature)
{
    const EncodingRow& row = RowOf(encoding);
    if (!row.encode(text, writeSignature ? row.signature : std::string_view{})) {
        return std::nullopt;
    }
    return text;
}

}  // namespace AdvXMLParser
