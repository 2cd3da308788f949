#include <emmintrin.h>

#include "xml/scan/PlainMarks.h"
#include "xml/scan/x86/VectorMarks.h"

namespace AdvXMLParser {

namespace {

/// What sixteen or more bytes hold: a bit for each byte.
struct Findings {
    std::uint64_t marks;
    std::uint64_t notAscii;
    std::uint64_t forbidden;  ///< control characters that XML excludes
};

__m128i Bytes(char value) noexcept
{
    return _mm_set1_epi8(value);
}

std::uint64_t BitsOf(__m128i bytes) noexcept
{
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(bytes)));
}

/// '"' and '&' differ in one bit, and so do '<' and '>'.
__m128i AreMarks(__m128i input) noexcept
{
    const __m128i doubleQuoteOrAmpersand = _mm_cmpeq_epi8(_mm_or_si128(input, Bytes('"' ^ '&')), Bytes('&'));
    const __m128i angle = _mm_cmpeq_epi8(_mm_or_si128(input, Bytes('<' ^ '>')), Bytes('>'));
    const __m128i quote = _mm_cmpeq_epi8(input, Bytes('\''));
    return _mm_or_si128(_mm_or_si128(doubleQuoteOrAmpersand, angle), quote);
}

__m128i AreForbidden(__m128i input) noexcept
{
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(input, Bytes(0x1F)), input);
    const __m128i lineEnd = _mm_or_si128(_mm_cmpeq_epi8(input, Bytes('\n')), _mm_cmpeq_epi8(input, Bytes('\r')));
    return _mm_andnot_si128(_mm_or_si128(lineEnd, _mm_cmpeq_epi8(input, Bytes('\t'))), control);
}

Findings LookAt(const char* block) noexcept
{
    Findings findings{};
    constexpr std::uint32_t kVectorBytes = sizeof(__m128i);
    for (std::uint32_t at = 0; at < kBlockBytes; at += kVectorBytes) {
        const __m128i input = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + at));
        findings.marks |= BitsOf(AreMarks(input)) << at;
        findings.notAscii |= BitsOf(input) << at;
        findings.forbidden |= BitsOf(AreForbidden(input)) << at;
    }
    return findings;
}

}  // namespace

std::uint32_t* FindMarksWithSse2(const TextPiece& piece, std::uint32_t* marks) noexcept
{
    std::uint32_t at = piece.begin;
    for (; piece.end - at >= kBlockBytes; at += kBlockBytes) {
        const Findings findings = LookAt(piece.text + at);
        // A character that reaches into an ASCII block is found with the block in which it begins.
        const bool isValid = findings.notAscii == 0 || HoldsCharactersOnly({piece.text, at, at + kBlockBytes});
        if (!isValid || findings.forbidden != 0) {
            return nullptr;
        }
        marks = WriteMarks(findings.marks, at, marks);
    }
    return FindMarksPlainly({piece.text, at, piece.end}, marks);
}

}  // namespace AdvXMLParser
