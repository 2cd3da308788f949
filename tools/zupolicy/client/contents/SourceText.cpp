#include "tools/zupolicy/client/contents/SourceText.h"

#include <algorithm>
#include <string_view>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

using namespace std::string_view_literals;

/// Units converted at a time, so that a large file is not held as UTF-16 as well.
constexpr std::size_t kPieceUnits = std::size_t{64} << 10u;

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

std::optional<std::string> DecodeUtf16(std::string_view bytes, bool littleEndian)
{
    if (bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    const auto unitAt = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char16_t>(littleEndian ? first | second << 8 : first << 8 | second);
    };
    std::string utf8;
    utf8.reserve(bytes.size() / 2);
    std::u16string piece;
    for (std::size_t at = 0; at < bytes.size();) {
        piece.clear();
        while (at < bytes.size() && (piece.size() < kPieceUnits || IsHighSurrogate(piece.back()))) {
            piece += unitAt(at);
            at += 2;
        }
        utf8 += ToUtf8(piece);
    }
    return utf8;
}

std::string DecodeLatin1(std::string_view bytes)
{
    std::string utf8;
    const auto high = std::count_if(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
    utf8.reserve(bytes.size() + static_cast<std::size_t>(high));
    for (const char byte : bytes) {
        AppendUtf8(utf8, static_cast<unsigned char>(byte));
    }
    return utf8;
}

/// Whether the bytes begin with a declaration that names ISO-8859-1, in any case of its letters.
bool DeclaresLatin1(std::string_view bytes)
{
    if (!bytes.starts_with("<?xml")) {
        return false;
    }
    std::string declaration(bytes.substr(0, bytes.find("?>")));
    std::transform(declaration.begin(), declaration.end(), declaration.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const std::size_t key = declaration.find("encoding");
    return key != std::string::npos && declaration.find("iso-8859-1", key) != std::string::npos;
}

}  // namespace

std::optional<std::string> DecodeSource(std::string bytes)
{
    for (const auto& [signature, littleEndian] : {std::pair{"\xFF\xFE"sv, true}, std::pair{"\xFE\xFF"sv, false}}) {
        if (bytes.starts_with(signature)) {
            return DecodeUtf16(std::string_view(bytes).substr(signature.size()), littleEndian);
        }
    }
    if (bytes.starts_with("<\0?\0"sv) || bytes.starts_with("\0<\0?"sv)) {
        return DecodeUtf16(bytes, bytes.front() == '<');
    }
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) {
        bytes.erase(0, 3);
    } else if (DeclaresLatin1(bytes)) {
        return DecodeLatin1(bytes);
    }
    return bytes;
}

}  // namespace zupm::tool
