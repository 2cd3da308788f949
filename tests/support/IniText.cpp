#include "tests/support/IniText.h"

#include <cstddef>
#include <optional>

#include "text/Utf.h"

namespace zupm::test {

std::u16string DecodeIni(std::string_view bytes)
{
    std::u16string text;
    const bool isHighFirst = bytes.starts_with("\xFE\xFF");
    if (isHighFirst || bytes.starts_with("\xFF\xFE")) {
        for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
            const auto low = static_cast<unsigned char>(bytes[isHighFirst ? at + 1 : at]);
            const auto high = static_cast<unsigned char>(bytes[isHighFirst ? at : at + 1]);
            text += static_cast<char16_t>(low | high << 8);
        }
        return text;
    }
    if (std::optional<std::u16string> utf8 = ToUtf16(bytes)) {
        return *utf8;
    }
    for (const char byte : bytes) {
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return text;
}

}  // namespace zupm::test
