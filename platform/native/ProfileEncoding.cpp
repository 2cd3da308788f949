#include "platform/native/ProfileEncoding.h"

#include <algorithm>
#include <cstdint>

#include "platform/common/Utf.h"

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

std::u16string DecodeLittleEndian(std::string_view bytes)
{
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto low = static_cast<std::uint8_t>(bytes[2 * i]);
        const auto high = static_cast<std::uint8_t>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(high << 8 | low);
    }
    return text;
}

std::string EncodeLittleEndian(std::u16string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

}  // namespace

std::optional<ProfileText> DecodeProfile(std::string_view bytes)
{
    if (bytes.starts_with(kBigEndianSignature)) {
        return std::nullopt;
    }
    if (bytes.starts_with(kLittleEndianSignature)) {
        bytes.remove_prefix(kLittleEndianSignature.size());
        if (bytes.size() % 2 != 0) {
            return std::nullopt;
        }
        return ProfileText{ProfileEncoding::Utf16LittleEndianSigned, DecodeLittleEndian(bytes)};
    }
    if (bytes.starts_with(kUtf8Signature)) {
        return ProfileText{ProfileEncoding::Utf8Signed, DecodeUtf8(bytes.substr(kUtf8Signature.size()))};
    }
    return ProfileText{ProfileEncoding::Utf8, DecodeUtf8(bytes)};
}

std::string EncodeProfile(const ProfileText& profile)
{
    switch (profile.encoding) {
        case ProfileEncoding::Utf16LittleEndianSigned:
            return std::string(kLittleEndianSignature).append(EncodeLittleEndian(profile.text));
        case ProfileEncoding::Utf8Signed:
            return std::string(kUtf8Signature).append(EncodeUtf8(profile.text));
        case ProfileEncoding::Utf8:
            break;
    }
    return EncodeUtf8(profile.text);
}

}  // namespace zupm::native
