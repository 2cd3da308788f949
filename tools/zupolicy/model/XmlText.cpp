#include "tools/zupolicy/model/XmlText.h"

#include <zuPolicyManager/client/Utf.h>

#include <cstddef>

namespace zupm::model {
namespace {

/// Whether XML 1.0 has the character.
bool IsXml(char32_t character)
{
    if (character < 0x20) {
        return character == U'\t' || character == U'\n' || character == U'\r';
    }
    return character != 0xFFFE && character != 0xFFFF;
}

/// U+0001
std::string NameOf(char32_t character)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string name = "U+";
    for (unsigned int shift = 16; shift > 0; shift -= 4) {
        name += kDigits[(character >> (shift - 4)) & 0xFu];
    }
    return name;
}

}  // namespace

std::optional<std::string> ComplaintOfXml(std::string_view text)
{
    std::size_t number = 1;
    for (std::size_t at = 0; at < text.size(); ++number) {
        const client::Character character = client::Utf8CharacterAt(text, at);
        if (character.length == 0) {
            return std::nullopt;
        }
        if (!IsXml(character.value)) {
            return "holds a character that XML cannot hold: " + NameOf(character.value) + ", character " +
                   std::to_string(number);
        }
        at += character.length;
    }
    return std::nullopt;
}

}  // namespace zupm::model
