#include "xml/Escape.h"

#include <charconv>
#include <cstddef>
#include <cstdint>

#include "text/Utf.h"
#include "xml/Characters.h"
#include "xml/Exceptions.h"

namespace AdvXMLParser {

namespace {

constexpr std::string_view kCommentBegin = "<!--";
constexpr std::string_view kCommentEnd = "-->";
constexpr std::string_view kInstructionEnd = "?>";

struct Entity {
    std::string_view reference;
    char character;
};
constexpr Entity kEntities[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

/// Replaces every character of `special` by its entity, or by a character reference where it has none.
std::string Escape(std::u16string_view text, std::string_view special)
{
    if (!IsXmlText(text)) {
        throw InvalidCharacterException();
    }
    const std::string plain = *zupm::ToUtf8(text);
    std::string out;
    out.reserve(plain.size());
    std::size_t at = 0;
    for (std::size_t hit = 0; (hit = plain.find_first_of(special, at)) != std::string::npos; at = hit + 1) {
        out.append(plain, at, hit - at);
        const Entity* entity = std::begin(kEntities);
        while (entity != std::end(kEntities) && entity->character != plain[hit]) {
            ++entity;
        }
        out += entity != std::end(kEntities) ? std::string(entity->reference)
                                             : "&#" + std::to_string(static_cast<int>(plain[hit])) + ";";
    }
    return out.append(plain, at);
}

/// Appends the meaning of the reference at the start of `raw` and returns its length.
std::size_t AppendReference(std::string_view raw, std::string& out)
{
    const std::size_t length = raw.find(';') + 1;
    const std::string_view reference = raw.substr(0, length);
    if (reference[1] == '#') {
        const bool isHex = reference[2] == 'x';
        const char* const digits = reference.data() + (isHex ? 3 : 2);
        std::uint32_t codePoint = 0;
        std::from_chars(digits, reference.data() + length - 1, codePoint, isHex ? 16 : 10);
        zupm::AppendUtf8(out, static_cast<char32_t>(codePoint));
        return length;
    }
    for (const Entity& entity : kEntities) {
        if (entity.reference == reference) {
            out += entity.character;
        }
    }
    return length;
}

/// Appends text whose only special character is CR: CR and CR LF mean LF.
void AppendWithLineEnds(std::string_view raw, std::string& out)
{
    for (std::size_t cr = 0; (cr = raw.find('\r')) != std::string_view::npos;) {
        out.append(raw.substr(0, cr));
        out += '\n';
        raw.remove_prefix(raw.substr(cr).starts_with("\r\n") ? cr + 2 : cr + 1);
    }
    out.append(raw);
}

/// Appends the meaning of the markup at the start of `raw` and returns its length.
std::size_t AppendMarkup(std::string_view raw, std::string& out)
{
    if (raw.starts_with(kCdataBegin)) {
        const std::size_t end = raw.find(kCdataEnd, kCdataBegin.size());
        AppendWithLineEnds(raw.substr(kCdataBegin.size(), end - kCdataBegin.size()), out);
        return end + kCdataEnd.size();
    }
    if (raw.starts_with(kCommentBegin)) {
        return raw.find(kCommentEnd, kCommentBegin.size()) + kCommentEnd.size();
    }
    return raw.find(kInstructionEnd) + kInstructionEnd.size();
}

}  // namespace

std::string EscapeText(std::u16string_view text)
{
    return Escape(text, "&<>\r");
}

std::string EscapeAttribute(std::u16string_view text, char quote)
{
    return Escape(text, quote == '"' ? "&<\"\t\n\r" : "&<'\t\n\r");
}

std::string DecodeAttribute(std::string_view raw)
{
    std::string out;
    out.reserve(raw.size());
    for (std::size_t hit = 0; (hit = raw.find_first_of("&\t\n\r")) != std::string_view::npos;) {
        out.append(raw.substr(0, hit));
        raw.remove_prefix(hit);
        if (raw.front() == '&') {
            raw.remove_prefix(AppendReference(raw, out));
        } else {
            out += ' ';
            raw.remove_prefix(raw.starts_with("\r\n") ? 2 : 1);
        }
    }
    return out.append(raw);
}

void AppendDecodedText(std::string_view raw, std::string& out)
{
    for (std::size_t hit = 0; (hit = raw.find_first_of("&<\r")) != std::string_view::npos;) {
        out.append(raw.substr(0, hit));
        raw.remove_prefix(hit);
        if (raw.front() == '&') {
            raw.remove_prefix(AppendReference(raw, out));
        } else if (raw.front() == '<') {
            raw.remove_prefix(AppendMarkup(raw, out));
        } else {
            out += '\n';
            raw.remove_prefix(raw.starts_with("\r\n") ? 2 : 1);
        }
    }
    out.append(raw);
}

bool IsCharacterDataOnly(std::string_view raw) noexcept
{
    while (true) {
        const std::size_t markup = raw.find('<');
        if (markup == std::string_view::npos) {
            return true;
        }
        raw.remove_prefix(markup);
        if (!raw.starts_with(kCdataBegin)) {
            return false;
        }
        raw.remove_prefix(raw.find(kCdataEnd) + kCdataEnd.size());
    }
}

}  // namespace AdvXMLParser
