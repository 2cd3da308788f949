#include "xml/scan/MarkReader.h"

#include <algorithm>

namespace AdvXMLParser {

MarkReader::MarkReader(std::string_view text, std::uint32_t begin, const MarkFinder& finder, std::uint32_t pieceBytes)
    : m_text(text),
      m_finder(finder),
      m_pieceBytes(pieceBytes),
      m_read(begin),
      m_marks(std::size_t{pieceBytes} + MarkFinder::kSlack),
      m_next(m_marks.data()),
      m_last(m_marks.data())
{
}

void MarkReader::SkipTo(std::uint32_t offset)
{
    while (Peek() < offset) {
        ++m_next;
    }
}

void MarkReader::TakeAcrossPieces(std::uint32_t count)
{
    for (; count > 0; --count) {
        Next();
    }
}

void MarkReader::ReadOn()
{
    const auto size = static_cast<std::uint32_t>(m_text.size());
    m_next = m_marks.data();
    m_last = m_next;
    while (m_last == m_next && !m_isAtEnd) {
        const std::uint32_t end = m_read + std::min(m_pieceBytes, size - m_read);
        m_last = m_finder.find({m_text.data(), m_read, end}, m_marks.data());
        m_isValid = m_last != nullptr;
        // A character that is not complete is found by the piece after it, and there may be none.
        m_isAtEnd = m_read == size || !m_isValid;
        m_read = end;
    }
    if (m_isAtEnd) {
        m_marks.front() = size;
        m_last = m_next + 1;
    }
}

}  // namespace AdvXMLParser
