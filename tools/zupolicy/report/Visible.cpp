#include "tools/zupolicy/report/Visible.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// Format characters and separators of lines and paragraphs (Unicode categories Cf, Zl and Zp), and the other
/// characters that are ignored by default and thus leave no trace. Variation selectors of emoji are not among them.
constexpr Range kInvisible[] = {
    {0x0000, 0x001F},   {0x007F, 0x009F},   {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x0600, 0x0605},
    {0x061C, 0x061C},   {0x06DD, 0x06DD},   {0x070F, 0x070F},   {0x0890, 0x0891},   {0x08E2, 0x08E2},
    {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F},   {0x3164, 0x3164},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},
    {0x110BD, 0x110BD}, {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
    {0xE0000, 0xE0FFF},
};

bool IsInvisible(char32_t character)
{
    const auto* const range = std::find_if(std::begin(kInvisible), std::end(kInvisible),
                                           [&](const Range& row) { return character <= row.last; });
    return range != std::end(kInvisible) && character >= range->first;
}

/// The short escape of a character, as C has it; nothing when it has none.
std::string_view ShortEscape(char32_t character, Backslash backslash)
{
    switch (character) {
        case U'\n':
            return "\\n";
        case U'\r':
            return "\\r";
        case U'\t':
            return "\\t";
        case U'\\':
            return backslash == Backslash::Escaped ? "\\\\" : "";
        default:
            return {};
    }
}

void WriteHex(std::ostream& out, std::string_view mark, std::uint32_t number, unsigned digits)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    out << mark;
    for (unsigned left = digits; left > 0; --left) {
        out << kDigits[(number >> (4 * (left - 1))) & 0xFu];
    }
}

void WriteEscape(std::ostream& out, char32_t character)
{
    if (character < 0x10000) {
        WriteHex(out, "\\u", character, 4);
    } else {
        WriteHex(out, "\\U", character, 8);
    }
}

/// The length of the plain ASCII that the text begins with: most text is nothing more, and is written at once.
std::size_t PlainLength(std::string_view text)
{
    const auto* const end =
        std::find_if(text.begin(), text.end(), [](char c) { return c < 0x20 || c > 0x7E || c == '\\'; });
    return static_cast<std::size_t>(end - text.begin());
}

void WriteCharacter(std::ostream& out, std::string_view& text, Backslash backslash)
{
    const std::string_view rest = text;
    const std::optional<char32_t> character = TakeCharacter(text);
    if (!character) {
        WriteHex(out, "\\x", static_cast<std::uint8_t>(text.front()), 2);
        text.remove_prefix(1);
    } else if (const std::string_view escape = ShortEscape(*character, backslash); !escape.empty()) {
        out << escape;
    } else if (IsInvisible(*character)) {
        WriteEscape(out, *character);
    } else {
        out << rest.substr(0, rest.size() - text.size());
    }
}

}  // namespace

void WriteVisible(std::ostream& out, std::string_view text, Backslash backslash)
{
    while (!text.empty()) {
        const std::size_t plain = PlainLength(text);
        out << text.substr(0, plain);
        text.remove_prefix(plain);
        if (!text.empty()) {
            WriteCharacter(out, text, backslash);
        }
    }
}

std::string Visible(std::string_view text)
{
    std::ostringstream out;
    WriteVisible(out, text, Backslash::Escaped);
    return out.str();
}

std::string Shortened(std::string_view name)
{
    constexpr std::size_t kLongestShown = 200;
    if (name.size() <= kLongestShown) {
        return std::string(name);
    }
    std::size_t length = kLongestShown;
    while (length > 0 && (static_cast<std::uint8_t>(name[length]) & 0xC0u) == 0x80u) {
        --length;
    }
    return std::string(name.substr(0, length)) + "...";
}

std::string Quoted(std::string_view name)
{
    return "\"" + Shortened(name) + "\"";
}

}  // namespace zupm::tool
