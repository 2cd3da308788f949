#include "tools/zupolicy/client/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {
namespace {

/// What the first byte of a sequence means: its length, its own bits, and the least value that needs this length.
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

[[noreturn]] void ThrowInvalid(std::string_view argument)
{
    throw Failure(ExitCode::Usage, "an argument is not valid UTF-8: " + std::string(argument.substr(0, 200)));
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

std::u16string FromUtf8(std::string_view argument)
{
    std::optional<std::u16string> text = ToUtf16(argument);
    if (!text) {
        ThrowInvalid(argument);
    }
    return std::move(*text);
}

const std::string& Valid(const std::string& argument)
{
    if (!IsUtf8(argument)) {
        ThrowInvalid(argument);
    }
    return argument;
}

}  // namespace zupm::tool
