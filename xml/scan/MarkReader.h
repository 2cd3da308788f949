/// The marks of a text, one after another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "xml/scan/MarkFinder.h"

namespace AdvXMLParser {

/// Runs stage one a piece ahead of stage two, so that the text is still in the processor's cache when stage two looks
/// at it.
class MarkReader {
public:
    /// From `begin` on. The text ends in a zero byte and outlives the reader; `pieceBytes` is at least 1.
    MarkReader(std::string_view text, std::uint32_t begin, const MarkFinder& finder, std::uint32_t pieceBytes);

    /// The offset of the next mark without taking it; that of the text's end when there is none.
    [[nodiscard]] std::uint32_t Peek()
    {
        if (m_next == m_last) [[unlikely]] {
            ReadOn();
        }
        return *m_next;
    }
    /// Takes it. The text's end can be taken again and again.
    std::uint32_t Next()
    {
        const std::uint32_t mark = Peek();
        ++m_next;
        return mark;
    }
    /// The next `count` marks, without taking them, when the piece has that many left; otherwise nothing.
    [[nodiscard]] const std::uint32_t* Ahead(std::uint32_t count) const noexcept
    {
        return m_last - m_next >= static_cast<std::ptrdiff_t>(count) ? m_next : nullptr;
    }
    void Take(std::uint32_t count)
    {
        if (Ahead(count) != nullptr) [[likely]] {
            m_next += count;
        } else {
            TakeAcrossPieces(count);
        }
    }
    /// Takes all marks before `offset`.
    void SkipTo(std::uint32_t offset);

    /// Whether stage one found nothing wrong. When it does, the text appears to end before the piece.
    [[nodiscard]] bool IsValid() const noexcept { return m_isValid; }

private:
    void TakeAcrossPieces(std::uint32_t count);
    /// Finds the marks of the next piece that has any.
    void ReadOn();

    std::string_view m_text;
    const MarkFinder& m_finder;
    std::uint32_t m_pieceBytes;
    std::uint32_t m_read;  ///< the beginning of the next piece
    bool m_isValid = true;
    std::unique_ptr<std::uint32_t[]> m_marks;  ///< of one piece; not filled before, since most pieces have few
    const std::uint32_t* m_next;
    const std::uint32_t* m_last;
};

}  // namespace AdvXMLParser
