// Identifiers as text: "{8-4-4-4-12}".
#include <optional>
#include <string_view>

#include "zuPolicyManager/zucomrt.h"

namespace {

/// Where the digits of an identifier's 16 bytes are in its text, most significant digit of each field first.
constexpr int kBytePositions[] = {1, 3, 5, 7, 10, 12, 15, 17, 20, 22, 25, 27, 29, 31, 33, 35};
constexpr std::u16string_view kPattern = u"{00000000-0000-0000-0000-000000000000}";
constexpr std::u16string_view kDigits = u"0123456789ABCDEF";

std::optional<unsigned> DigitValue(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9') {
        return static_cast<unsigned>(unit - u'0');
    }
    if (unit >= u'A' && unit <= u'F') {
        return static_cast<unsigned>(unit - u'A') + 10;
    }
    if (unit >= u'a' && unit <= u'f') {
        return static_cast<unsigned>(unit - u'a') + 10;
    }
    return std::nullopt;
}

bool HasPunctuation(std::u16string_view text)
{
    if (text.size() != kPattern.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kPattern[i] != u'0' && text[i] != kPattern[i]) {
            return false;
        }
    }
    return true;
}

GUID FromBytes(const std::uint8_t (&bytes)[16])
{
    GUID guid{};
    guid.Data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                 static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    for (std::size_t i = 0; i < 8; ++i) {
        guid.Data4[i] = bytes[8 + i];
    }
    return guid;
}

std::optional<GUID> ParseGuid(std::u16string_view text)
{
    if (!HasPunctuation(text)) {
        return std::nullopt;
    }
    std::uint8_t bytes[16]{};
    for (std::size_t i = 0; i < 16; ++i) {
        const auto position = static_cast<std::size_t>(kBytePositions[i]);
        const auto high = DigitValue(text[position]);
        const auto low = DigitValue(text[position + 1]);
        if (!high || !low) {
            return std::nullopt;
        }
        bytes[i] = static_cast<std::uint8_t>(*high << 4 | *low);
    }
    return FromBytes(bytes);
}

std::uint8_t ByteOf(const GUID& guid, std::size_t index)
{
    if (index < 4) {
        return static_cast<std::uint8_t>(guid.Data1 >> (24 - 8 * index));
    }
    if (index < 6) {
        return static_cast<std::uint8_t>(guid.Data2 >> (8 * (5 - index)));
    }
    if (index < 8) {
        return static_cast<std::uint8_t>(guid.Data3 >> (8 * (7 - index)));
    }
    return guid.Data4[index - 8];
}

}  // namespace

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) noexcept
{
    if (clsid == nullptr) {
        return E_POINTER;
    }
    *clsid = GUID_NULL;
    // Reads one unit more than a correct text has, so a text of any length costs the same.
    std::size_t length = 0;
    while (text != nullptr && length <= kPattern.size() && text[length] != u'\0') {
        ++length;
    }
    const auto parsed = ParseGuid(text == nullptr ? std::u16string_view() : std::u16string_view(text, length));
    if (!parsed) {
        return CO_E_CLASSSTRING;
    }
    *clsid = *parsed;
    return S_OK;
}

int StringFromGUID2(REFGUID guid, LPOLESTR text, int capacity) noexcept
{
    constexpr auto kUnits = static_cast<int>(kPattern.size()) + 1;
    if (text == nullptr || capacity < kUnits) {
        return 0;
    }
    kPattern.copy(text, kPattern.size());
    text[kPattern.size()] = u'\0';
    for (std::size_t i = 0; i < 16; ++i) {
        const std::uint8_t byte = ByteOf(guid, i);
        text[kBytePositions[i]] = kDigits[byte >> 4];
        text[kBytePositions[i] + 1] = kDigits[byte & 0x0F];
    }
    return kUnits;
}
