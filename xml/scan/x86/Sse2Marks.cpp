// UTF-8 is validated by comparisons, without a branch: SSE2 has no table look-ups.
#include <emmintrin.h>

#include <cstring>

#include "xml/scan/PlainMarks.h"
#include "xml/scan/x86/VectorMarks.h"

namespace AdvXMLParser {

namespace {

constexpr std::uint32_t kVectorBytes = sizeof(__m128i);
/// Bytes before a vector that decide what its first bytes have to be.
constexpr std::uint32_t kMostBefore = 3;

/// What sixteen or more bytes hold: a bit for each byte.
struct Findings {
    std::uint64_t marks;
    std::uint64_t notAscii;
    std::uint64_t forbidden;  ///< control characters that XML excludes
};

__m128i Bytes(int value) noexcept
{
    return _mm_set1_epi8(static_cast<char>(value));
}

__m128i Load(const char* bytes) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

__m128i AreByte(__m128i input, int value) noexcept
{
    return _mm_cmpeq_epi8(input, Bytes(value));
}

__m128i AreAtLeast(__m128i input, int value) noexcept
{
    return _mm_cmpeq_epi8(_mm_max_epu8(input, Bytes(value)), input);
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

/// Continuations where none may be, and bytes where one has to be.
__m128i AreMisplaced(__m128i input, __m128i first, __m128i second, __m128i third) noexcept
{
    const __m128i follows =
        _mm_or_si128(AreAtLeast(first, 0xC0), _mm_or_si128(AreAtLeast(second, 0xE0), AreAtLeast(third, 0xF0)));
    const __m128i isContinuation = _mm_cmpgt_epi8(Bytes(0xC0), input);  // with signs these are the smallest bytes
    return _mm_xor_si128(follows, isContinuation);
}

/// Bytes that are in no character, and second bytes that no character has after its first one.
__m128i AreOutOfRange(__m128i input, __m128i first) noexcept
{
    const __m128i isOverlongTwo = AreByte(_mm_and_si128(input, Bytes(0xFE)), 0xC0);
    const __m128i isBeyond = AreAtLeast(input, 0xF5);
    // Continuations alone are compared, and those keep their order when they have signs.
    const __m128i isBelowA0 = _mm_cmpgt_epi8(Bytes(0xA0), input);
    const __m128i isBelow90 = _mm_cmpgt_epi8(Bytes(0x90), input);
    const __m128i isOverlong =
        _mm_or_si128(_mm_and_si128(AreByte(first, 0xE0), isBelowA0), _mm_and_si128(AreByte(first, 0xF0), isBelow90));
    const __m128i isSurrogateOrBeyond = _mm_or_si128(_mm_andnot_si128(isBelowA0, AreByte(first, 0xED)),
                                                     _mm_andnot_si128(isBelow90, AreByte(first, 0xF4)));
    return _mm_or_si128(_mm_or_si128(isOverlongTwo, isBeyond), _mm_or_si128(isOverlong, isSurrogateOrBeyond));
}

/// U+FFFE and U+FFFF: EF BF BE and EF BF BF.
__m128i AreNoCharacters(__m128i input, __m128i first, __m128i second) noexcept
{
    return _mm_and_si128(_mm_and_si128(AreByte(second, 0xEF), AreByte(first, 0xBF)), AreAtLeast(input, 0xBE));
}

/// Whether the bytes of a block are characters that XML can hold, as far as the bytes before it and its own decide. A
/// character that the block does not complete is found with the next one.
bool HoldsUtf8(const char* block) noexcept
{
    __m128i wrong = _mm_setzero_si128();
    for (std::uint32_t at = 0; at < kBlockBytes; at += kVectorBytes) {
        const __m128i input = Load(block + at);
        const __m128i first = Load(block + at - 1);
        const __m128i second = Load(block + at - 2);
        const __m128i third = Load(block + at - 3);
        wrong = _mm_or_si128(wrong, AreMisplaced(input, first, second, third));
        wrong = _mm_or_si128(wrong, _mm_or_si128(AreOutOfRange(input, first), AreNoCharacters(input, first, second)));
    }
    return _mm_movemask_epi8(wrong) == 0;
}

/// The same for a block that may be the beginning of the text: zeros are before that.
bool HoldsUtf8(const TextPiece& piece, std::uint32_t at) noexcept
{
    if (at >= kMostBefore) {
        return HoldsUtf8(piece.text + at);
    }
    char copy[kVectorBytes + kBlockBytes] = {};
    std::memcpy(copy + kVectorBytes - at, piece.text, at + kBlockBytes);
    return HoldsUtf8(copy + kVectorBytes);
}

Findings LookAt(const char* block) noexcept
{
    Findings findings{};
    for (std::uint32_t at = 0; at < kBlockBytes; at += kVectorBytes) {
        const __m128i input = Load(block + at);
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
    bool wasAscii = false;
    for (; piece.end - at >= kBlockBytes; at += kBlockBytes) {
        const Findings findings = LookAt(piece.text + at);
        const bool isAscii = findings.notAscii == 0;
        // An ASCII block may follow a character that is not complete.
        const bool isValid = (isAscii && wasAscii) || HoldsUtf8(piece, at);
        if (!isValid || findings.forbidden != 0) {
            return nullptr;
        }
        marks = WriteMarks(findings.marks, at, marks);
        wasAscii = isAscii;
    }
    return FindMarksPlainly({piece.text, at, piece.end}, marks);
}

}  // namespace AdvXMLParser
