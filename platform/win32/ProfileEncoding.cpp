#include "platform/win32/ProfileEncoding.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "platform/Files.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

namespace {

constexpr std::string_view kSignature = "\xFF\xFE";
constexpr std::string_view kBigEndianSignature = "\xFE\xFF";
constexpr char16_t kLastByte = 0xFF;

std::u16string FromCodePage(std::string_view bytes)
{
    if (bytes.empty()) {
        return {};
    }
    // No file is longer than kLargestFile.
    const int length = static_cast<int>(std::min(bytes.size(), kLargestFile));
    const int needed = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::u16string text(static_cast<std::size_t>(std::max(needed, 0)), u'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, WideBuffer(text), needed);
    return text;
}

std::optional<std::string> ToCodePage(std::u16string_view text)
{
    if (text.empty()) {
        return std::string();
    }
    if (text.size() > kLargestFile) {
        return std::nullopt;
    }
    // UTF-8 as the code page has an error flag, the others report that they replaced a character.
    const bool isUtf8 = GetACP() == CP_UTF8;
    const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    WINBOOL replaced = FALSE;
    WINBOOL* const report = isUtf8 ? nullptr : &replaced;
    const auto* const wide = reinterpret_cast<const wchar_t*>(text.data());
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_ACP, flags, wide, length, nullptr, 0, nullptr, report);
    if (needed <= 0 || replaced != FALSE) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, flags, wide, length, bytes.data(), needed, nullptr, report);
    return bytes;
}

std::u16string OneUnitAByte(std::string_view bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::ranges::transform(bytes, text.begin(), [](char byte) { return static_cast<unsigned char>(byte); });
    return text;
}

std::optional<std::string> OneByteAUnit(std::u16string_view text)
{
    if (std::ranges::any_of(text, [](char16_t unit) { return unit > kLastByte; })) {
        return std::nullopt;
    }
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return bytes;
}

}  // namespace

std::optional<ProfileText> DecodeProfile(std::string_view bytes)
{
    const bool isUtf16 = bytes.starts_with(kSignature);
    if (bytes.starts_with(kBigEndianSignature) || (isUtf16 && bytes.size() % sizeof(char16_t) != 0)) {
        return std::nullopt;
    }
    if (isUtf16) {
        bytes.remove_prefix(kSignature.size());
        std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
        std::memcpy(text.data(), bytes.data(), bytes.size());
        return ProfileText{std::move(text), ProfileEncoding::Utf16};
    }
    std::u16string text = FromCodePage(bytes);
    if (ToCodePage(text) == bytes) {
        return ProfileText{std::move(text), ProfileEncoding::CodePage};
    }
    return ProfileText{OneUnitAByte(bytes), ProfileEncoding::RawBytes};
}

std::optional<std::string> EncodeProfile(std::u16string_view text, ProfileEncoding encoding)
{
    switch (encoding) {
        case ProfileEncoding::CodePage:
            return ToCodePage(text);
        case ProfileEncoding::RawBytes:
            return OneByteAUnit(text);
        case ProfileEncoding::Utf16:
            break;
    }
    std::string bytes(kSignature);
    bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
    return bytes;
}

std::optional<std::u16string> InEncoding(std::u16string_view text, ProfileEncoding encoding)
{
    if (encoding != ProfileEncoding::RawBytes) {
        return std::u16string(text);
    }
    const auto bytes = ToCodePage(text);
    return bytes ? std::optional(OneUnitAByte(*bytes)) : std::nullopt;
}

}  // namespace zupm::win32
