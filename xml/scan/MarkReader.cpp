#include "xml/scan/MarkReader.h"

#include <algorithm>

namespace AdvXMLParser {

MarkReader::MarkReader(std::string_view text, std::uint32_t begin, const MarkFinder& finder, std::uint32_t pieceBytes)
    : m_text(text),
      m_finder(finder),
      m_pieceBytes(pieceBytes),
      m_read(begin),
      m_marks(std::make_unique_for_overwrite<std::uint32_t[]>(std::min<std::size_t>(pieceBytes, text.size()) +
                                                              MarkFinder::kSlack)),
      m_next(m_marks.get()),
      m_last(m_marks.get())
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
    m_next = m_marks.get();
    m_last = m_next;
    while (m_last == m_next && m_isValid && m_read < size) {
        const std::uint32_t end = m_read + std::min(m_pieceBytes, size - m_read);
        const std::uint32_t* const last = m_finder.find({m_text.data(), m_read, end}, m_marks.get());
        m_isValid = last != nullptr;
        m_last = m_isValid ? last : m_next;
        m_read = end;
    }
    if (m_last == m_next) {
        m_marks[0] = size;
        ++m_last;
    }
}

}  // namespace AdvXMLParser
