// Each conversion takes sixteen ASCII characters at a time, by loops of known length, which the compiler turns into
// vector instructions. Where it meets another character, it takes the next sixteen one by one. Results are collected
// in a buffer that stays in the processor's cache, because to fill the destination with zeros first costs as much as
// the conversion.
#include "text/Transcode.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace zupm {

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::size_t kRun = 16;
/// Characters that are converted into the buffer at a time.
constexpr std::size_t kBuffered = 4096;

constexpr bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00U) == 0xD800U;
}

constexpr bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00U) == 0xDC00U;
}

constexpr bool IsContinuation(char byte)
{
    return (static_cast<std::uint8_t>(byte) & 0xC0U) == 0x80U;
}

/// Eight bytes need no alignment.
std::uint64_t WordAt(const char* bytes)
{
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

/// Whether kRun bytes are ASCII.
bool IsAsciiBlock(const char* bytes)
{
    return ((WordAt(bytes) | WordAt(bytes + 8)) & 0x8080808080808080U) == 0;
}

/// Whether kRun units are ASCII.
template <ByteOrder kOrder>
bool IsAsciiUnits(const char* bytes)
{
    constexpr std::uint64_t kBeyond = kOrder == ByteOrder::LittleEndian ? 0xFF80FF80FF80FF80U : 0x80FF80FF80FF80FFU;
    return ((WordAt(bytes) | WordAt(bytes + 8) | WordAt(bytes + 16) | WordAt(bytes + 24)) & kBeyond) == 0;
}

/// Writes kRun units, which are ASCII, as bytes. A loop over an array of units becomes vector instructions; one over
/// every second byte does not.
template <ByteOrder kOrder>
void NarrowBlock(const char* bytes, char* out)
{
    std::uint16_t units[kRun];
    std::memcpy(units, bytes, sizeof(units));
    std::uint8_t narrow[kRun];
    for (std::size_t i = 0; i < kRun; ++i) {
        narrow[i] = static_cast<std::uint8_t>(units[i] >> (kOrder == ByteOrder::LittleEndian ? 0U : 8U));
    }
    std::memcpy(out, narrow, sizeof(narrow));  // cppcheck-suppress uninitvar ; the loop fills it
}

template <ByteOrder kOrder>
char16_t LoadUnit(const char* bytes)
{
    std::uint16_t unit = 0;
    std::memcpy(&unit, bytes, sizeof(unit));
    if constexpr (kOrder == ByteOrder::BigEndian) {
        unit = static_cast<std::uint16_t>(unit << 8U | unit >> 8U);
    }
    return static_cast<char16_t>(unit);
}

template <ByteOrder kOrder>
char* StoreUnit(char* out, char32_t value)
{
    auto unit = static_cast<std::uint16_t>(value);
    if constexpr (kOrder == ByteOrder::BigEndian) {
        unit = static_cast<std::uint16_t>(unit << 8U | unit >> 8U);
    }
    std::memcpy(out, &unit, sizeof(unit));
    return out + sizeof(unit);
}

char* StoreContinuation(char* out, char32_t bits)
{
    *out = static_cast<char>(0x80U | (bits & 0x3FU));
    return out + 1;
}

/// Writes a code point that is no surrogate.
char* StoreUtf8(char* out, char32_t codePoint)
{
    if (codePoint < 0x80) {
        *out = static_cast<char>(codePoint);
        return out + 1;
    }
    if (codePoint < 0x800) {
        *out = static_cast<char>(0xC0U | codePoint >> 6U);
        return StoreContinuation(out + 1, codePoint);
    }
    if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0U | codePoint >> 12U);
    } else {
        *out++ = static_cast<char>(0xF0U | codePoint >> 18U);
        out = StoreContinuation(out, codePoint >> 12U);
    }
    out = StoreContinuation(out, codePoint >> 6U);
    return StoreContinuation(out, codePoint);
}

/// Converts the unit at `at`, or the pair that begins there, and moves `at` past it; null when it is not valid.
template <ByteOrder kOrder>
char* ConvertUnit(const char*& at, const char* end, char* out)
{
    const char16_t unit = LoadUnit<kOrder>(at);
    at += 2;
    if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit)) {
        return StoreUtf8(out, unit);
    }
    if (!IsHighSurrogate(unit) || end - at < 2) {
        return nullptr;
    }
    const char16_t low = LoadUnit<kOrder>(at);
    if (!IsLowSurrogate(low)) {
        return nullptr;
    }
    at += 2;
    return StoreUtf8(out, 0x10000U + ((unit & 0x3FFU) << 10U) + (low & 0x3FFU));
}

/// Converts units, a whole number of them, up to `stop` or one unit beyond it, or up to the first that is not valid.
template <ByteOrder kOrder>
char* ConvertUnits(const char*& at, const char* stop, const char* end, char* out)
{
    while (at < stop) {
        if (static_cast<std::size_t>(end - at) >= 2 * kRun && IsAsciiUnits<kOrder>(at)) {
            NarrowBlock<kOrder>(at, out);
            at += 2 * kRun;
            out += kRun;
            continue;
        }
        for (std::size_t i = 0; i < kRun && at < stop; ++i) {
            const char* const unit = at;
            char* const next = ConvertUnit<kOrder>(at, end, out);
            if (next == nullptr) {
                at = unit;
                return out;
            }
            out = next;
        }
    }
    return out;
}

/// The bytes that units take as UTF-8; half of the four bytes of a pair for each of its units.
template <ByteOrder kOrder>
std::size_t LengthInUtf8(std::string_view bytes)
{
    // The counts of a stretch fit in sixteen bits, so that the compiler counts several units at a time.
    constexpr std::size_t kStretch = 8192;
    std::size_t length = 0;
    for (std::size_t from = 0; from < bytes.size(); from += 2 * kStretch) {
        const std::string_view stretch = bytes.substr(from, 2 * kStretch);
        std::uint16_t count = 0;
        for (std::size_t at = 0; at + 1 < stretch.size(); at += 2) {
            const char16_t unit = LoadUnit<kOrder>(stretch.data() + at);
            const bool isOne = unit < 0x80U;
            const bool isThree = unit >= 0x800U && (unit & 0xF800U) != 0xD800U;
            count =
                static_cast<std::uint16_t>(count + 2U - static_cast<unsigned>(isOne) + static_cast<unsigned>(isThree));
        }
        length += count;
    }
    return length;
}

template <ByteOrder kOrder>
std::size_t AppendUtf8Of(std::string_view bytes, std::string& utf8)
{
    // Three bytes for each unit, of which a block may lie beyond the piece.
    char buffer[3 * (kBuffered + kRun)];
    const char* at = bytes.data();
    const char* const end = at + bytes.size() / 2 * 2;
    while (at < end) {
        const char* const stop = at + std::min(static_cast<std::size_t>(end - at), 2 * kBuffered);
        char* const out = ConvertUnits<kOrder>(at, stop, end, buffer);
        const auto length = static_cast<std::size_t>(out - buffer);
        if (utf8.capacity() - utf8.size() < length) {
            const std::string_view rest(at, static_cast<std::size_t>(end - at));
            utf8.reserve(utf8.size() + length + LengthInUtf8<kOrder>(rest));
        }
        utf8.append(buffer, length);
        if (at < stop) {
            break;
        }
    }
    return static_cast<std::size_t>(at - bytes.data());
}

/// Decodes the character at `at`, which is valid, and moves `at` past it.
char32_t TakeCodePoint(const char*& at)
{
    const auto byte = [&at](std::size_t i) { return static_cast<char32_t>(static_cast<std::uint8_t>(at[i])); };
    const char32_t first = byte(0);
    char32_t codePoint = first;
    if (first < 0x80) {
        at += 1;
    } else if (first < 0xE0) {
        codePoint = (first & 0x1FU) << 6U | (byte(1) & 0x3FU);
        at += 2;
    } else if (first < 0xF0) {
        codePoint = (first & 0xFU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
        at += 3;
    } else {
        codePoint = (first & 0x7U) << 18U | (byte(1) & 0x3FU) << 12U | (byte(2) & 0x3FU) << 6U | (byte(3) & 0x3FU);
        at += 4;
    }
    return codePoint;
}

template <ByteOrder kOrder>
char* StoreUtf16(char* out, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        return StoreUnit<kOrder>(out, codePoint);
    }
    out = StoreUnit<kOrder>(out, 0xD7C0U + (codePoint >> 10U));
    return StoreUnit<kOrder>(out, 0xDC00U | (codePoint & 0x3FFU));
}

/// Converts valid UTF-8.
template <ByteOrder kOrder>
char* ConvertUtf8(std::string_view utf8, char* out)
{
    const char* at = utf8.data();
    for (const char* const end = at + utf8.size(); at < end;) {
        const auto left = static_cast<std::size_t>(end - at);
        if (left >= kRun && IsAsciiBlock(at)) {
            std::uint16_t units[kRun];
            for (std::size_t i = 0; i < kRun; ++i) {
                units[i] = static_cast<std::uint16_t>(static_cast<std::uint8_t>(at[i])
                                                      << (kOrder == ByteOrder::LittleEndian ? 0U : 8U));
            }
            std::memcpy(out, units, sizeof(units));  // cppcheck-suppress uninitvar ; the loop fills it
            at += kRun;
            out += sizeof(units);
            continue;
        }
        for (const char* const stop = at + std::min(left, kRun); at < stop;) {
            out = StoreUtf16<kOrder>(out, TakeCodePoint(at));
        }
    }
    return out;
}

template <ByteOrder kOrder>
void AppendUtf16Of(std::string_view utf8, std::string& bytes)
{
    char buffer[2 * kBuffered];
    while (!utf8.empty()) {
        const std::string_view piece = PieceOfUtf8(utf8, kBuffered);
        const char* const out = ConvertUtf8<kOrder>(piece, buffer);
        bytes.append(buffer, static_cast<std::size_t>(out - buffer));
        utf8.remove_prefix(piece.size());
    }
}

char* ConvertLatin1(std::string_view bytes, char* out)
{
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t left = bytes.size() - at;
        if (left >= kRun && IsAsciiBlock(bytes.data() + at)) {
            std::memcpy(out, bytes.data() + at, kRun);
            at += kRun;
            out += kRun;
            continue;
        }
        for (const std::size_t stop = at + std::min(left, kRun); at < stop; ++at) {
            out = StoreUtf8(out, static_cast<std::uint8_t>(bytes[at]));
        }
    }
    return out;
}

/// Converts valid UTF-8 whose characters ISO-8859-1 has.
char* ConvertToLatin1(std::string_view utf8, char* out)
{
    const char* at = utf8.data();
    for (const char* const end = at + utf8.size(); at < end;) {
        const auto left = static_cast<std::size_t>(end - at);
        if (left >= kRun && IsAsciiBlock(at)) {
            std::memcpy(out, at, kRun);
            at += kRun;
            out += kRun;
            continue;
        }
        for (const char* const stop = at + std::min(left, kRun); at < stop; ++out) {
            *out = static_cast<char>(TakeCodePoint(at));
        }
    }
    return out;
}

}  // namespace

std::size_t AppendUtf8OfUtf16(std::string_view bytes, ByteOrder order, std::string& utf8)
{
    return order == ByteOrder::LittleEndian ? AppendUtf8Of<ByteOrder::LittleEndian>(bytes, utf8)
                                            : AppendUtf8Of<ByteOrder::BigEndian>(bytes, utf8);
}

void AppendUtf8OfLatin1(std::string_view bytes, std::string& utf8)
{
    char buffer[2 * kBuffered];
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kBuffered);
        const char* const out = ConvertLatin1(piece, buffer);
        utf8.append(buffer, static_cast<std::size_t>(out - buffer));
        bytes.remove_prefix(piece.size());
    }
}

bool FitsLatin1(std::string_view utf8) noexcept
{
    // The lead byte of U+00FF.
    constexpr std::uint8_t kLargestLead = 0xC3;
    return std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<std::uint8_t>(c) <= kLargestLead; });
}

void AppendLatin1OfUtf8(std::string_view utf8, std::string& bytes)
{
    char buffer[kBuffered];
    while (!utf8.empty()) {
        const std::string_view piece = PieceOfUtf8(utf8, kBuffered);
        const char* const out = ConvertToLatin1(piece, buffer);
        bytes.append(buffer, static_cast<std::size_t>(out - buffer));
        utf8.remove_prefix(piece.size());
    }
}

void AppendUtf16OfUtf8(std::string_view utf8, ByteOrder order, std::string& bytes)
{
    order == ByteOrder::LittleEndian ? AppendUtf16Of<ByteOrder::LittleEndian>(utf8, bytes)
                                     : AppendUtf16Of<ByteOrder::BigEndian>(utf8, bytes);
}

std::size_t LengthInUtf16(std::string_view utf8) noexcept
{
    // Every byte but a continuation begins a unit, and a lead byte of four begins two. The counts of a stretch fit in a
    // byte, so that the compiler counts many at a time.
    constexpr std::size_t kStretch = 112;
    std::size_t length = 0;
    for (std::size_t at = 0; at < utf8.size(); at += kStretch) {
        const std::string_view stretch = utf8.substr(at, kStretch);
        std::uint8_t units = 0;
        for (const char c : stretch) {
            const auto isFour = static_cast<unsigned>(static_cast<std::uint8_t>(c) >= 0xF0U);
            units = static_cast<std::uint8_t>(units + static_cast<unsigned>(!IsContinuation(c)) + isFour);
        }
        length += units;
    }
    return length;
}

std::size_t WriteUtf16(std::string_view utf8, void* units) noexcept
{
    char* const out = static_cast<char*>(units);
    return static_cast<std::size_t>(ConvertUtf8<kOwnByteOrder>(utf8, out) - out) / sizeof(char16_t);
}

std::string_view PieceOfUtf8(std::string_view utf8, std::size_t size) noexcept
{
    if (utf8.size() <= size) {
        return utf8;
    }
    while (size > 0 && IsContinuation(utf8[size])) {
        --size;
    }
    return utf8.substr(0, size);
}

}  // namespace zupm
