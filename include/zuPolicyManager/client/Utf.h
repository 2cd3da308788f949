/// UTF-8, which clients of the C++ header use, and UTF-16, which the component's interfaces take.
///
/// Threads   None of their own.
/// Errors    Nothing here reports a text that is not valid: Text.h does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zupm::client {

/// One character of a text, and the bytes or units that it takes; 0 of them where no valid sequence begins.
struct Character {
    char32_t value;
    std::size_t length;
};

[[nodiscard]] constexpr bool IsSurrogate(char32_t value) noexcept
{
    return value >= 0xD800 && value < 0xE000;
}

/// The character at a byte of UTF-8. Overlong forms, surrogates and what lies above U+10FFFF are not valid.
[[nodiscard]] constexpr Character Utf8CharacterAt(std::string_view text, std::size_t at) noexcept
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(at);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) {
        return {0, 0};
    }
    char32_t value = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(at + i) & 0xC0u) != 0x80u) {
            return {0, 0};
        }
        value = (value << 6u) | (byteAt(at + i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool valid = value >= kLeast[length] && value <= 0x10FFFF && !IsSurrogate(value);
    return valid ? Character{value, length} : Character{0, 0};
}

/// The character at a unit of UTF-16; a lone surrogate is not valid. `Unit` is any 16-bit character type.
template <class Unit>
[[nodiscard]] constexpr Character Utf16CharacterAt(const Unit* text, std::size_t size, std::size_t at) noexcept
{
    static_assert(sizeof(Unit) == sizeof(char16_t), "UTF-16 has units of 16 bits");
    const auto unit = static_cast<char16_t>(text[at]);
    if (!IsSurrogate(unit)) {
        return {unit, 1};
    }
    const char16_t next = at + 1 < size ? static_cast<char16_t>(text[at + 1]) : u'\0';
    if (unit >= 0xDC00 || next < 0xDC00 || next > 0xDFFF) {
        return {0, 0};
    }
    return {0x10000 + ((unit & 0x3FFu) << 10u) + (next & 0x3FFu), 2};
}

/// Appends one character, at most U+10FFFF.
inline void AppendUtf8(std::string& out, char32_t value)
{
    const auto append = [&](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (value < 0x80) {
        append(value);
        return;
    }
    const unsigned int following = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    append(((0xFF00u >> (following + 1)) & 0xFFu) | (value >> (6u * following)));
    for (unsigned int left = following; left > 0; --left) {
        append(0x80u | ((value >> (6u * (left - 1))) & 0x3Fu));
    }
}

/// UTF-8 of a UTF-16 text; a lone surrogate becomes U+FFFD. For messages.
template <class Unit>
[[nodiscard]] std::string ToUtf8Lossy(const Unit* text, std::size_t size)
{
    std::string out;
    out.reserve(size);
    for (std::size_t at = 0; at < size;) {
        const Character character = Utf16CharacterAt(text, size, at);
        AppendUtf8(out, character.length == 0 ? U'\uFFFD' : character.value);
        at += character.length == 0 ? 1 : character.length;
    }
    return out;
}

/// UTF-8 with each control character written as \n, \r, \t or \x1B; valid or not, the other bytes stay. For messages.
[[nodiscard]] inline std::string WithVisibleControls(std::string_view text)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        // U+0080 to U+009F, which terminals obey too, are two bytes.
        if (byteAt(at) == 0xC2 && at + 1 < text.size() && byteAt(at + 1) >= 0x80 && byteAt(at + 1) < 0xA0) {
            ++at;
        } else if (byteAt(at) >= 0x20 && byteAt(at) != 0x7F) {
            out.push_back(text[at]);
            continue;
        }
        const unsigned char control = byteAt(at);
        if (control == '\n' || control == '\r' || control == '\t') {
            out += control == '\n' ? "\\n" : control == '\r' ? "\\r" : "\\t";
        } else {
            out += "\\x";
            out.push_back("0123456789ABCDEF"[control >> 4u]);
            out.push_back("0123456789ABCDEF"[control & 0xFu]);
        }
    }
    return out;
}

}  // namespace zupm::client
