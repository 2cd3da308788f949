/// Stage two of the scanner, the lower half: what is in a text beside tags.
#pragma once

#include <cstdint>
#include <string_view>

#include "xml/scan/MarkReader.h"
#include "xml/scan/References.h"
#include "xml/scan/SameBytes.h"

namespace AdvXMLParser {

/// What is returned for the end of a token that is not accepted; no token ends there.
inline constexpr std::uint32_t kNotAccepted = 0;

/// Reads the tokens of a text in order. Every function takes the marks of what it reads.
///
/// Invariant What a function reads of the text ends at the zero byte after it; no token is read twice, however long.
class Tokens {
public:
    Tokens(std::string_view text, std::uint32_t begin, const MarkFinder& finder, std::uint32_t pieceBytes)
        : m_text(text), m_marks(text, begin, finder, pieceBytes)
    {
    }

    [[nodiscard]] std::string_view Text() const noexcept { return m_text; }
    [[nodiscard]] MarkReader& Marks() noexcept { return m_marks; }

    /// The byte at `at`, which is at most the text's size: the text ends in a zero byte.
    [[nodiscard]] char operator[](std::uint32_t at) const noexcept { return *At(at); }
    [[nodiscard]] const char* At(std::uint32_t at) const noexcept { return m_text.data() + at; }

    [[nodiscard]] std::uint32_t SkipBlanks(std::uint32_t at) const noexcept
    {
        while (IsBlank((*this)[at])) {
            ++at;
        }
        return at;
    }
    [[nodiscard]] static constexpr bool IsBlank(char c) noexcept
    {
        return c == ' ' || c == '\n' || c == '\r' || c == '\t';
    }

    /// Whether `length` bytes at `at` are the same as at `earlier`.
    [[nodiscard]] bool IsRepeated(std::uint32_t earlier, std::uint32_t at, std::uint32_t length) const noexcept;

    /// The offset of the quote that ends an attribute's value; its opening quote was taken.
    [[nodiscard]] std::uint32_t ValueEnd(char quote)
    {
        while (true) {
            const std::uint32_t mark = m_marks.Next();
            const char c = (*this)[mark];
            if (c == quote) {
                return mark;
            }
            const bool isTheTextsEnd = c == '\0';
            if (isTheTextsEnd || c == '<' || (c == '&' && !IsReferenceAt(At(mark)))) {
                return kNotAccepted;
            }
        }
    }

    // --- where the token ends that begins at `begin` -----------------------------------------------------------------

    [[nodiscard]] std::uint32_t CommentEnd(std::uint32_t begin);
    [[nodiscard]] std::uint32_t InstructionEnd(std::uint32_t begin);
    [[nodiscard]] std::uint32_t CdataEnd(std::uint32_t begin);

private:
    [[nodiscard]] bool Has(std::uint32_t at, std::string_view expected) const noexcept
    {
        return m_text.substr(at).starts_with(expected);
    }
    /// Takes the marks of a token that ends with `closing` at `close`.
    [[nodiscard]] std::uint32_t TakeTo(std::size_t close, std::string_view closing);

    std::string_view m_text;
    MarkReader m_marks;
};

inline bool Tokens::IsRepeated(std::uint32_t earlier, std::uint32_t at, std::uint32_t length) const noexcept
{
    return length <= m_text.size() - at && AreBytesSame(At(earlier), At(at), length);
}

}  // namespace AdvXMLParser
