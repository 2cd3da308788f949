#include "platform/posix/ProfileEncoding.h"

#include <algorithm>
#include <cstdint>

#include "text/Utf.h"

namespace zupm::native {

namespace {

constexpr std::string_view kUtf8Signature = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianSignature = "\xFF\xFE";
constexpr std::string_view kBigEndianSignature = "\xFE\xFF";

/// What a stray byte is added to.
constexpr char16_t kStrayByte = 0xDC00;

std::u16string DecodeUtf8(std::string_view bytes)
{
    std::u16string text;
    while (!bytes.empty()) {
        const std::size_t valid = std::min(FindInvalidUtf8(bytes), bytes.size());
        text.append(ToUtf16(bytes.substr(0, valid)).value_or(std::u16string()));
        bytes.remove_prefix(valid);
        if (!bytes.empty()) {
            text.push_back(static_cast<char16_t>(kStrayByte + static_cast<std::uint8_t>(bytes.front())));
            bytes.remove_prefix(1);
        }
    }
    return text;
}

std::string EncodeUtf8(std::u16string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const std::size_t valid = std::min(FindInvalidUtf16(text), text.size());
        bytes.append(ToUtf8(text.substr(0, valid)).value_or(std::string()));
        text.remove_prefix(valid);
        if (!text.empty()) {
            bytes.push_back(static_cast<char>(text.front() - kStrayByte));
            text.remove_prefix(1);
        }
    }
    return bytes;
}

/// Which half of a unit comes first.
enum class ByteOrder { LowFirst, HighFirst };

std::u16string DecodeUnits(std::string_view bytes, ByteOrder order)
{
    std::u16string text((bytes.size() + 1) / 2, u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isLow = (i % 2 == 0) == (order == ByteOrder::LowFirst);
        const auto half = static_cast<std::uint8_t>(bytes[i]);
        text[i / 2] = static_cast<char16_t>(text[i / 2] | (isLow ? half : half << 8));
    }
    return text;
}

std::string EncodeUnits(std::u16string_view text, ByteOrder order)
{
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes.push_back(order == ByteOrder::LowFirst ? low : high);
        bytes.push_back(order == ByteOrder::LowFirst ? high : low);
    }
    return bytes;
}

}  // namespace

ProfileText DecodeProfile(std::string_view bytes)
{
    if (bytes.starts_with(kBigEndianSignature)) {
        bytes.remove_prefix(kBigEndianSignature.size());
        return {ProfileEncoding::Utf16BigEndianSigned, DecodeUnits(bytes, ByteOrder::HighFirst)};
    }
    if (bytes.starts_with(kLittleEndianSignature)) {
        bytes.remove_prefix(kLittleEndianSignature.size());
        return {ProfileEncoding::Utf16LittleEndianSigned, DecodeUnits(bytes, ByteOrder::LowFirst)};
    }
    if (bytes.starts_with(kUtf8Signature)) {
        return {ProfileEncoding::Utf8Signed, DecodeUtf8(bytes.substr(kUtf8Signature.size()))};
    }
    return {ProfileEncoding::Utf8, DecodeUtf8(bytes)};
}

std::string EncodeProfile(const ProfileText& profile)
{
    switch (profile.encoding) {
        case ProfileEncoding::Utf16LittleEndianSigned:
            return std::string(kLittleEndianSignature).append(EncodeUnits(profile.text, ByteOrder::LowFirst));
        case ProfileEncoding::Utf16BigEndianSigned:
            return std::string(kBigEndianSignature).append(EncodeUnits(profile.text, ByteOrder::HighFirst));
        case ProfileEncoding::Utf8Signed:
            return std::string(kUtf8Signature).append(EncodeUtf8(profile.text));
        case ProfileEncoding::Utf8:
            break;
    }
    return EncodeUtf8(profile.text);
}

}  // namespace zupm::native
