#include "tools/zupolicy/client/Utf8.h"

#include <cstddef>
#include <cstdint>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// What the first byte of a sequence tells: its length, its own bits, and the least value that may be written so long.
struct Lead {
    std::size_t length;
    char32_t bits;
    char32_t least;
};

std::optional<Lead> LeadOf(std::uint8_t byte)
{
    if (byte < 0x80) {
        return Lead{1, byte, 0};
    }
    if (byte >= 0xC2 && byte < 0xE0) {
        return Lead{2, byte & 0x1Fu, 0x80};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return Lead{3, byte & 0x0Fu, 0x800};
    }
    if (byte >= 0xF0 && byte < 0xF5) {
        return Lead{4, byte & 0x07u, 0x10000};
    }
    return std::nullopt;
}

bool IsSurrogate(char32_t character)
{
    return character >= 0xD800 && character < 0xE000;
}

void AppendUtf16(std::u16string& out, char32_t character)
{
    if (character < 0x10000) {
        out.push_back(static_cast<char16_t>(character));
        return;
    }
    out.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10u)));
    out.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FFu)));
}

/// Takes one character off the front of a UTF-16 text.
char32_t TakeWideCharacter(std::u16string_view& text)
{
    const char32_t first = text.front();
    text.remove_prefix(1);
    if (!IsSurrogate(first)) {
        return first;
    }
    if (first >= 0xDC00 || text.empty() || text.front() < 0xDC00 || text.front() > 0xDFFF) {
        return kReplacement;
    }
    const char32_t second = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10u) + (second - 0xDC00);
}

}  // namespace

std::optional<char32_t> TakeCharacter(std::string_view& text)
{
    const std::optional<Lead> lead = LeadOf(static_cast<std::uint8_t>(text.front()));
    if (!lead || text.size() < lead->length) {
        return std::nullopt;
    }
    char32_t character = lead->bits;
    for (std::size_t i = 1; i < lead->length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if ((byte & 0xC0u) != 0x80u) {
            return std::nullopt;
        }
        character = (character << 6u) | (byte & 0x3Fu);
    }
    if (character < lead->least || character > 0x10FFFF || IsSurrogate(character)) {
        return std::nullopt;
    }
    text.remove_prefix(lead->length);
    return character;
}

void AppendUtf8(std::string& out, char32_t character)
{
    const auto tail = [&](unsigned shift) { out.push_back(static_cast<char>(0x80u | ((character >> shift) & 0x3Fu))); };
    if (character < 0x80) {
        out.push_back(static_cast<char>(character));
    } else if (character < 0x800) {
        out.push_back(static_cast<char>(0xC0u | (character >> 6u)));
        tail(0);
    } else if (character < 0x10000) {
        out.push_back(static_cast<char>(0xE0u | (character >> 12u)));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0u | (character >> 18u)));
        tail(12);
        tail(6);
        tail(0);
    }
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty()) {
        if (!TakeCharacter(text)) {
            return false;
        }
    }
    return true;
}

std::u16string FromUtf8(std::string_view text)
{
    const std::string_view whole = text;
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::optional<char32_t> character = TakeCharacter(text);
        if (!character) {
            throw Failure(ExitCode::Usage, "an argument is not valid UTF-8: " + std::string(whole.substr(0, 200)));
        }
        AppendUtf16(out, *character);
    }
    return out;
}

std::string ToUtf8(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        AppendUtf8(out, TakeWideCharacter(text));
    }
    return out;
}

}  // namespace zupm::tool
