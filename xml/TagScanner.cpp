#include "xml/TagScanner.h"

namespace AdvXMLParser {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::size_t NameEnd(std::string_view tag) noexcept
{
    return tag.find_first_of(" \t\r\n/>", 1);
}

}  // namespace

TagScanner::TagScanner(std::string_view tag) noexcept : m_tag(tag), m_at(NameEnd(tag)) {}

std::optional<AttributeSpan> TagScanner::Next() noexcept
{
    const std::size_t nameBegin = m_tag.find_first_not_of(kBlanks, m_at);
    if (m_tag[nameBegin] == '/' || m_tag[nameBegin] == '>') {
        return std::nullopt;
    }
    AttributeSpan span;
    const std::size_t nameEnd = m_tag.find_first_of(" \t\r\n=", nameBegin);
    span.name = m_tag.substr(nameBegin, nameEnd - nameBegin);
    const std::size_t quoteOffset = m_tag.find_first_of("\"'", nameEnd);
    span.quote = m_tag[quoteOffset];
    span.valueOffset = quoteOffset + 1;
    const std::size_t close = m_tag.find(span.quote, span.valueOffset);
    span.value = m_tag.substr(span.valueOffset, close - span.valueOffset);
    span.end = close + 1;
    m_at = span.end;
    return span;
}

std::size_t AttributeInsertOffset(std::string_view tag) noexcept
{
    std::size_t offset = NameEnd(tag);
    TagScanner scanner(tag);
    while (const std::optional<AttributeSpan> span = scanner.Next()) {
        offset = span->end;
    }
    return offset;
}

}  // namespace AdvXMLParser
