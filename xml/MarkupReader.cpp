#include "xml/MarkupReader.h"

#include <cstdint>

#include "xml/Characters.h"

namespace AdvXMLParser {

std::optional<Tag> MarkupReader::Next() noexcept
{
    while (true) {
        const std::size_t begin = m_text.find('<', m_at);
        if (begin == std::string_view::npos) {
            return std::nullopt;
        }
        const char kind = m_text[begin + 1];
        if (kind != '!' && kind != '?') {
            return TakeTag(begin);
        }
        SkipMarkup(begin);
    }
}

Tag MarkupReader::TakeTag(std::size_t begin) noexcept
{
    std::size_t at = begin + 1;
    const bool isEnd = m_text[at] == '/';
    for (; m_text[at] != '>'; ++at) {
        if (m_text[at] == '"' || m_text[at] == '\'') {
            at = m_text.find(m_text[at], at + 1);
        }
    }
    const TagKind kind = isEnd ? TagKind::End : m_text[at - 1] == '/' ? TagKind::Empty : TagKind::Start;
    m_at = at + 1;
    return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(m_at), kind};
}

void MarkupReader::SkipMarkup(std::size_t begin) noexcept
{
    const std::string_view rest = m_text.substr(begin);
    m_at = begin + 2;
    if (rest.starts_with("<?")) {
        SkipPast("?>", m_at);
    } else if (rest.starts_with("<!--")) {
        SkipPast("-->", begin + 4);
    } else if (rest.starts_with(kCdataBegin)) {
        SkipPast(kCdataEnd, begin + kCdataBegin.size());
    } else {
        SkipDeclaration();
    }
}

/// A DOCTYPE with an internal subset ends here with the first declaration in it. The others are passed over one by one
/// in the same way, and the bracket that closes the subset is text outside of the document element. Quotes, comments
/// and instructions may hold a '>'.
void MarkupReader::SkipDeclaration() noexcept
{
    while (m_text[m_at] != '>') {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.front() == '"' || rest.front() == '\'') {
            SkipPast(rest.substr(0, 1), m_at + 1);
        } else if (rest.starts_with("<!--")) {
            SkipPast("-->", m_at + 4);
        } else if (rest.starts_with("<?")) {
            SkipPast("?>", m_at + 2);
        } else {
            ++m_at;
        }
    }
    ++m_at;
}

void MarkupReader::SkipPast(std::string_view mark, std::size_t from) noexcept
{
    m_at = m_text.find(mark, from) + mark.size();
}

}  // namespace AdvXMLParser
