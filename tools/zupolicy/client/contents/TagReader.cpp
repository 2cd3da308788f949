#include "tools/zupolicy/client/contents/TagReader.h"

#include <algorithm>
#include <charconv>

#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kCdataBegin = "<![CDATA[";

struct Entity {
    std::string_view reference;
    char character;
};
constexpr Entity kEntities[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

/// The character that a reference such as "&#x41;" stands for.
std::optional<char32_t> CharacterOf(std::string_view reference)
{
    if (!reference.starts_with("&#")) {
        const auto* const entity = std::find_if(std::begin(kEntities), std::end(kEntities),
                                                [&](const Entity& row) { return row.reference == reference; });
        return entity == std::end(kEntities) ? std::nullopt : std::optional<char32_t>(entity->character);
    }
    const bool isHex = reference.starts_with("&#x");
    std::uint32_t number = 0;
    std::from_chars(reference.data() + (isHex ? 3 : 2), reference.data() + reference.size(), number, isHex ? 16 : 10);
    const bool isCharacter = number <= 0x10FFFF && (number < 0xD800 || number >= 0xE000);
    return isCharacter ? std::optional<char32_t>(number) : std::nullopt;
}

/// Takes the reference at the front; no reference leaves a mere '&'.
void AppendReference(std::string& out, std::string_view& text)
{
    const std::size_t end = text.find(';');
    const auto character = end == std::string_view::npos ? std::nullopt : CharacterOf(text.substr(0, end + 1));
    AppendUtf8(out, character.value_or(U'&'));
    text.remove_prefix(character ? end + 1 : 1);
}

/// Takes the line end at the front; CR LF and CR are one, too.
void TakeLineEnd(std::string_view& text)
{
    text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
}

/// Appends text whose characters `special` are to be replaced: white space by `blank`, '&' by its character.
void AppendReplaced(std::string& out, std::string_view text, std::string_view special, char blank)
{
    for (std::size_t hit = 0; (hit = text.find_first_of(special)) != std::string_view::npos;) {
        out += text.substr(0, hit);
        text.remove_prefix(hit);
        if (text.front() == '&') {
            AppendReference(out, text);
        } else {
            out += blank;
            TakeLineEnd(text);
        }
    }
    out += text;
}

}  // namespace

std::optional<Markup> TagReader::Next()
{
    while (m_at < m_text.size() && !m_broken) {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.front() != '<') {
            return TakeText();
        }
        if (rest.starts_with(kCdataBegin)) {
            return TakeVerbatim();
        }
        if (rest.starts_with("<!--")) {
            static_cast<void>(TakeThrough("-->", 4));
        } else if (rest.starts_with("<?")) {
            static_cast<void>(TakeThrough("?>", 2));
        } else if (rest.starts_with("<!")) {
            SkipDeclaration();
        } else {
            return TakeTag();
        }
    }
    return std::nullopt;
}

std::optional<Markup> TagReader::TakeText()
{
    const std::size_t begin = m_at;
    m_at = std::min(m_text.find('<', begin), m_text.size());
    return Markup{Markup::Kind::Text, m_text.substr(begin, m_at - begin), {}};
}

std::optional<Markup> TagReader::TakeVerbatim()
{
    const auto text = TakeThrough("]]>", kCdataBegin.size());
    return text ? std::optional(Markup{Markup::Kind::Verbatim, *text, {}}) : std::nullopt;
}

/// What lies between the next `skip` bytes and `mark`; goes on after the mark.
std::optional<std::string_view> TagReader::TakeThrough(std::string_view mark, std::size_t skip)
{
    const std::size_t begin = m_at + skip;
    const std::size_t end = m_text.find(mark, begin);
    if (end == std::string_view::npos) {
        m_broken = true;
        return std::nullopt;
    }
    m_at = end + mark.size();
    return m_text.substr(begin, end - begin);
}

/// A DOCTYPE with an internal subset ends here with the first declaration in it: the others are passed over one by one
/// just so, and the bracket that closes the subset is text outside of the root. Quotes, comments and instructions may
/// hold a '>'.
void TagReader::SkipDeclaration()
{
    for (m_at += 2; m_at < m_text.size() && !m_broken;) {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.front() == '"' || rest.front() == '\'') {
            static_cast<void>(TakeThrough(rest.substr(0, 1), 1));
        } else if (rest.starts_with("<!--")) {
            static_cast<void>(TakeThrough("-->", 4));
        } else if (rest.starts_with("<?")) {
            static_cast<void>(TakeThrough("?>", 2));
        } else {
            ++m_at;
            if (rest.front() == '>') {
                return;
            }
        }
    }
    m_broken = true;
}

std::size_t TagReader::EndOfTag() const
{
    std::size_t at = m_at;
    while ((at = m_text.find_first_of(">\"'", at)) != std::string_view::npos && m_text[at] != '>') {
        at = m_text.find(m_text[at], at + 1);
        if (at == std::string_view::npos) {
            break;
        }
        ++at;
    }
    return at;
}

std::optional<Markup> TagReader::TakeTag()
{
    const std::size_t begin = m_at;
    const std::size_t end = EndOfTag();
    if (end == std::string_view::npos) {
        m_broken = true;
        return std::nullopt;
    }
    m_at = end + 1;
    std::string_view inside = m_text.substr(begin + 1, end - begin - 1);
    if (inside.starts_with('/')) {
        return Markup{Markup::Kind::Close, {}, {}};
    }
    const bool closes = inside.ends_with('/');
    inside.remove_suffix(closes ? 1 : 0);
    const std::size_t length = std::min(inside.find_first_of(kBlanks), inside.size());
    return Markup{closes ? Markup::Kind::OpenAndClose : Markup::Kind::Open, inside.substr(0, length),
                  inside.substr(length)};
}

std::optional<RawAttribute> TakeAttribute(std::string_view& attributes)
{
    const std::size_t begin = attributes.find_first_not_of(kBlanks);
    const std::size_t equals = attributes.find('=');
    const std::size_t quote = attributes.find_first_of("\"'");
    if (begin == std::string_view::npos || equals == std::string_view::npos || quote == std::string_view::npos ||
        equals < begin) {
        return std::nullopt;
    }
    const std::size_t close = attributes.find(attributes[quote], quote + 1);
    if (close == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view name = attributes.substr(begin, equals - begin);
    name = name.substr(0, name.find_first_of(kBlanks));
    const RawAttribute attribute{name, attributes.substr(quote + 1, close - quote - 1)};
    attributes.remove_prefix(close + 1);
    return attribute;
}

std::optional<std::string> AttributeOf(std::string_view attributes, std::string_view name)
{
    while (const std::optional<RawAttribute> attribute = TakeAttribute(attributes)) {
        if (attribute->name == name) {
            std::string value;
            AppendReplaced(value, attribute->value, "&\t\n\r", ' ');
            return value;
        }
    }
    return std::nullopt;
}

void AppendDecoded(std::string& out, std::string_view text, bool verbatim)
{
    AppendReplaced(out, text, verbatim ? "\r" : "&\r", '\n');
}

}  // namespace zupm::tool
