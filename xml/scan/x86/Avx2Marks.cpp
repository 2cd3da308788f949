// UTF-8 is validated by table look-ups: three nibbles of two neighbouring bytes each name the mistakes that they could
// be part of, and what all three name is one. See Keiser and Lemire, "Validating UTF-8 In Less Than One Instruction Per
// Byte" (2021).
#include <immintrin.h>

#include <algorithm>
#include <cstring>

#include "xml/scan/PlainMarks.h"
#include "xml/scan/x86/VectorMarks.h"

namespace AdvXMLParser {

namespace {

constexpr std::uint32_t kVectorBytes = sizeof(__m256i);
static_assert(2 * kVectorBytes == kBlockBytes);

/// Sixteen answers, one for each value of a nibble.
using NibbleTable = std::array<std::uint8_t, 16>;

/// What can be wrong with two neighbouring bytes.
enum Mistake : std::uint8_t {
    TooShort = 1 << 0,       ///< a first byte, then no continuation
    TooLong = 1 << 1,        ///< ASCII, then a continuation
    OverlongThree = 1 << 2,  ///< E0, then less than A0
    TooLarge = 1 << 3,       ///< F4, then 90 or more; or more than F4
    Surrogate = 1 << 4,      ///< ED, then A0 or more
    OverlongTwo = 1 << 5,    ///< C0 or C1, then a continuation
    OverlongFour = 1 << 6,   ///< F0, then less than 90; or more than F4, then less than 90
    TwoFollow = 1 << 7,      ///< two continuations: right only as the end of three or four bytes
};
constexpr std::uint8_t kTooLargeToo = OverlongFour;  // F5 and more, then less than 90: has the same bit
constexpr std::uint8_t kAnyFirst = TooShort | TooLong | TwoFollow;
constexpr std::uint8_t kBeyond = kAnyFirst | TooLarge | kTooLargeToo;

constexpr NibbleTable kFirstHigh = {
    TooLong,
    TooLong,
    TooLong,
    TooLong,
    TooLong,
    TooLong,
    TooLong,
    TooLong,  // ASCII
    TwoFollow,
    TwoFollow,
    TwoFollow,
    TwoFollow,                                          // a continuation
    TooShort | OverlongTwo,                             // C
    TooShort,                                           // D
    TooShort | OverlongThree | Surrogate,               // E
    TooShort | TooLarge | kTooLargeToo | OverlongFour,  // F
};
constexpr NibbleTable kFirstLow = {
    kAnyFirst | OverlongTwo | OverlongThree | OverlongFour,
    kAnyFirst | OverlongTwo,
    kAnyFirst,
    kAnyFirst,
    kAnyFirst | TooLarge,  // F4
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond,
    kBeyond | Surrogate,  // ED
    kBeyond,
    kBeyond,
};
constexpr std::uint8_t kContinuation = TooLong | OverlongTwo | TwoFollow;
constexpr NibbleTable kSecondHigh = {
    TooShort,
    TooShort,
    TooShort,
    TooShort,
    TooShort,
    TooShort,
    TooShort,
    TooShort,                                                     // ASCII
    kContinuation | OverlongThree | OverlongFour | kTooLargeToo,  // 8
    kContinuation | OverlongThree | TooLarge,                     // 9
    kContinuation | Surrogate | TooLarge,                         // A
    kContinuation | Surrogate | TooLarge,                         // B
    TooShort,
    TooShort,
    TooShort,
    TooShort,  // a first byte
};

/// A byte that no byte of these tables' nibbles can be equal to.
constexpr std::uint8_t kNone = 0xFF;
/// The marks, each at its low nibble: these differ.
constexpr NibbleTable kMarks = {kNone, kNone, '"',   kNone, kNone, kNone, '&', '\'',
                                kNone, kNone, kNone, kNone, '<',   kNone, '>', kNone};
/// The control characters that XML can hold, likewise.
constexpr NibbleTable kControls = {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone,
                                   kNone, '\t',  '\n',  kNone, kNone, '\r',  kNone, kNone};

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i Bytes(int value) noexcept
{
    return _mm256_set1_epi8(static_cast<char>(value));
}

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i Load(const void* bytes) noexcept
{
    return _mm256_loadu_si256(static_cast<const __m256i*>(bytes));
}

/// The table's answer for every byte: for its low nibble, 0 for bytes that are not ASCII.
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i LookUp(const NibbleTable& table, __m256i bytes) noexcept
{
    const __m128i half = _mm_loadu_si128(reinterpret_cast<const __m128i*>(table.data()));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(half), bytes);
}

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i HighNibbles(__m256i bytes) noexcept
{
    return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), Bytes(0x0F));
}

/// For every byte the one that many places before it.
template <int places>
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i Earlier(__m256i input, __m256i before) noexcept
{
    return _mm256_alignr_epi8(input, _mm256_permute2x128_si256(before, input, 0x21), 16 - places);
}

/// Not zero where UTF-8 is not valid; a character that `input` does not complete is found with the next bytes.
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i Utf8Mistakes(__m256i input, __m256i before) noexcept
{
    const __m256i first = Earlier<1>(input, before);
    const __m256i second = Earlier<2>(input, before);
    const __m256i third = Earlier<3>(input, before);
    const __m256i ofFirst = _mm256_and_si256(LookUp(kFirstHigh, HighNibbles(first)),
                                             LookUp(kFirstLow, _mm256_and_si256(first, Bytes(0x0F))));
    const __m256i mistakes = _mm256_and_si256(ofFirst, LookUp(kSecondHigh, HighNibbles(input)));
    const __m256i isThirdOrFourth = _mm256_or_si256(_mm256_subs_epu8(second, Bytes(0xE0 - TwoFollow)),
                                                    _mm256_subs_epu8(third, Bytes(0xF0 - TwoFollow)));
    return _mm256_xor_si256(mistakes, _mm256_and_si256(isThirdOrFourth, Bytes(TwoFollow)));
}

/// U+FFFE and U+FFFF: EF BF BE and EF BF BF.
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i AreNoCharacters(__m256i input, __m256i before) noexcept
{
    const __m256i first = _mm256_cmpeq_epi8(Earlier<2>(input, before), Bytes(0xEF));
    const __m256i second = _mm256_cmpeq_epi8(Earlier<1>(input, before), Bytes(0xBF));
    const __m256i third = _mm256_cmpeq_epi8(_mm256_max_epu8(input, Bytes(0xBE)), input);
    return _mm256_and_si256(_mm256_and_si256(first, second), third);
}

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i AreForbiddenControls(__m256i input) noexcept
{
    const __m256i control = _mm256_cmpeq_epi8(_mm256_min_epu8(input, Bytes(0x1F)), input);
    return _mm256_andnot_si256(_mm256_cmpeq_epi8(LookUp(kControls, input), input), control);
}

[[gnu::target("avx2,bmi,popcnt")]] inline std::uint64_t MarksOf(__m256i input) noexcept
{
    const __m256i marks = _mm256_cmpeq_epi8(LookUp(kMarks, input), input);
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(marks));
}

/// The bytes before `at`, zeros in front of them.
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i BytesBefore(const char* text, std::uint32_t at) noexcept
{
    std::array<char, kVectorBytes> bytes{};
    const std::uint32_t count = std::min(at, kVectorBytes);
    std::memcpy(bytes.data() + kVectorBytes - count, text + at - count, count);
    return Load(bytes.data());
}

}  // namespace

[[gnu::target("avx2,bmi,popcnt")]] std::uint32_t* FindMarksWithAvx2(const TextPiece& piece,
                                                                    std::uint32_t* marks) noexcept
{
    std::uint32_t at = piece.begin;
    __m256i before = BytesBefore(piece.text, at);
    __m256i wrong = _mm256_setzero_si256();
    bool wasAscii = false;
    for (; piece.end - at >= kBlockBytes; at += kBlockBytes) {
        const __m256i left = Load(piece.text + at);
        const __m256i right = Load(piece.text + at + kVectorBytes);
        const bool isAscii = _mm256_movemask_epi8(_mm256_or_si256(left, right)) == 0;
        // An ASCII block may follow a character that is not complete.
        if (!isAscii || !wasAscii) {
            wrong = _mm256_or_si256(wrong, _mm256_or_si256(Utf8Mistakes(left, before), Utf8Mistakes(right, left)));
            wrong =
                _mm256_or_si256(wrong, _mm256_or_si256(AreNoCharacters(left, before), AreNoCharacters(right, left)));
        }
        wrong = _mm256_or_si256(wrong, _mm256_or_si256(AreForbiddenControls(left), AreForbiddenControls(right)));
        marks = WriteMarks(MarksOf(left) | MarksOf(right) << kVectorBytes, at, marks);
        before = right;
        wasAscii = isAscii;
    }
    const bool isValid = _mm256_testz_si256(wrong, wrong) != 0;
    return isValid ? FindMarksPlainly({piece.text, at, piece.end}, marks) : nullptr;
}

}  // namespace AdvXMLParser
