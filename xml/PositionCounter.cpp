#include "xml/PositionCounter.h"

#include <algorithm>
#include <cstdint>

namespace AdvXMLParser {

namespace {

bool BeginsCharacter(char c) noexcept
{
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

std::uint32_t CharactersOf(std::string_view utf8) noexcept
{
    return static_cast<std::uint32_t>(std::count_if(utf8.begin(), utf8.end(), BeginsCharacter));
}

}  // namespace

Position PositionCounter::At(std::size_t offset) noexcept
{
    const std::string_view read = m_text.substr(m_at, offset - m_at);
    if (read.find('\r') == std::string_view::npos) {
        CountPlainLines(read);
    } else {
        CountLines(read);
    }
    m_at = offset;
    return m_position;
}

/// Most files end their lines with LF: these are counted many bytes at a time.
void PositionCounter::CountPlainLines(std::string_view read) noexcept
{
    const std::size_t last = read.rfind('\n');
    if (last != std::string_view::npos) {
        m_position.line += static_cast<std::uint32_t>(std::count(read.begin(), read.end(), '\n'));
        m_position.column = 1;
        read.remove_prefix(last + 1);
    }
    m_position.column += CharactersOf(read);
}

void PositionCounter::CountLines(std::string_view read) noexcept
{
    for (std::size_t at = 0; at < read.size(); ++at) {
        const char c = read[at];
        const std::size_t next = m_at + at + 1;
        const bool isPairStart = c == '\r' && next < m_text.size() && m_text[next] == '\n';
        if (c == '\n' || (c == '\r' && !isPairStart)) {
            ++m_position.line;
            m_position.column = 1;
        } else if (!isPairStart && BeginsCharacter(c)) {
            ++m_position.column;
        }
    }
}

}  // namespace AdvXMLParser
