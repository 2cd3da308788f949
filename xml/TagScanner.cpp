#include "xml/TagScanner.h"

#include <array>

namespace AdvXMLParser {

namespace {

/// The first place at or after `at` for which `isThere` holds. A tag has one: names and values are short, and every
/// character is looked at once.
template <class IsThere>
std::size_t Seek(std::string_view tag, std::size_t at, IsThere isThere) noexcept
{
    while (!isThere(tag[at])) {
        ++at;
    }
    return at;
}

bool IsBlank(char byte) noexcept
{
    return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

/// What ends a name in a tag.
constexpr std::array<bool, 256> kEndsName = [] {
    std::array<bool, 256> ends{};
    for (const char byte : {' ', '\n', '\r', '\t', '/', '>', '='}) {
        ends[static_cast<unsigned char>(byte)] = true;
    }
    return ends;
}();

std::size_t NameEnd(std::string_view tag, std::size_t at) noexcept
{
    return Seek(tag, at, [](char byte) { return kEndsName[static_cast<unsigned char>(byte)]; });
}

}  // namespace

TagScanner::TagScanner(std::string_view tag) noexcept : m_tag(tag), m_at(NameEnd(tag, 1)) {}

std::optional<AttributeSpan> TagScanner::Next() noexcept
{
    const std::size_t nameBegin = Seek(m_tag, m_at, [](char byte) { return !IsBlank(byte); });
    if (m_tag[nameBegin] == '/' || m_tag[nameBegin] == '>') {
        return std::nullopt;
    }
    AttributeSpan span;
    const std::size_t nameEnd = NameEnd(m_tag, nameBegin);
    span.name = m_tag.substr(nameBegin, nameEnd - nameBegin);
    const std::size_t quoteOffset = Seek(m_tag, nameEnd, [](char byte) { return byte == '"' || byte == '\''; });
    span.quote = m_tag[quoteOffset];
    span.valueOffset = quoteOffset + 1;
    const std::size_t close = m_tag.find(span.quote, span.valueOffset);
    span.value = m_tag.substr(span.valueOffset, close - span.valueOffset);
    span.end = close + 1;
    m_at = span.end;
    return span;
}

std::string_view TagName(std::string_view tag) noexcept
{
    return tag.substr(1, NameEnd(tag, 1) - 1);
}

std::size_t AttributeInsertOffset(std::string_view tag) noexcept
{
    std::size_t offset = NameEnd(tag, 1);
    TagScanner scanner(tag);
    while (const std::optional<AttributeSpan> span = scanner.Next()) {
        offset = span->end;
    }
    return offset;
}

}  // namespace AdvXMLParser
