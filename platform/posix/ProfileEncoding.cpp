#include "platform/posix/ProfileEncoding.h"

#include <algorithm>
#include <cstdint>

#include "text/Utf.h"
#include "text/Utf16Bytes.h"

namespace zupm::native {

namespace {

/// A stray byte plus this is its unit.
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

/// Takes half a unit at the end for a whole one, its other half zero.
std::u16string DecodeUnits(std::string_view bytes, ByteOrder order)
{
    std::u16string text;
    text.reserve((bytes.size() + 1) / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        text.push_back(UnitAt(bytes, at, order));
    }
    if (bytes.size() % 2 != 0) {
        const char half[] = {bytes.back(), '\0'};
        text.push_back(UnitAt(std::string_view(half, sizeof(half)), 0, order));
    }
    return text;
}

std::string EncodeUnits(std::string_view signature, std::u16string_view text, ByteOrder order)
{
    std::string bytes(signature);
    bytes.reserve(signature.size() + text.size() * 2);
    AppendUnits(text, order, bytes);
    return bytes;
}

}  // namespace

ProfileText DecodeProfile(std::string_view bytes)
{
    if (bytes.starts_with(kUtf16BigEndianSignature)) {
        bytes.remove_prefix(kUtf16BigEndianSignature.size());
        return {ProfileEncoding::Utf16BigEndianSigned, DecodeUnits(bytes, ByteOrder::BigEndian)};
    }
    if (bytes.starts_with(kUtf16LittleEndianSignature)) {
        bytes.remove_prefix(kUtf16LittleEndianSignature.size());
        return {ProfileEncoding::Utf16LittleEndianSigned, DecodeUnits(bytes, ByteOrder::LittleEndian)};
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
            return EncodeUnits(kUtf16LittleEndianSignature, profile.text, ByteOrder::LittleEndian);
        case ProfileEncoding::Utf16BigEndianSigned:
            return EncodeUnits(kUtf16BigEndianSignature, profile.text, ByteOrder::BigEndian);
        case ProfileEncoding::Utf8Signed:
            return std::string(kUtf8Signature).append(EncodeUtf8(profile.text));
        case ProfileEncoding::Utf8:
            break;
    }
    return EncodeUtf8(profile.text);
}

}  // namespace zupm::native
