#include "text/Utf.h"

#include <cstdint>
#include <cstring>

#include "text/Transcode.h"

namespace zupm {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// What a place in a text holds: a code point, or `length` bytes (units) that belong to none.
struct Step {
    char32_t codePoint;
    std::size_t length;
    bool valid;
};

/// What a lead byte demands: how many bytes follow, and the range of the first of them. The narrower ranges keep out
/// overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
    std::size_t following;
    std::uint8_t low;
    std::uint8_t high;
};

constexpr Lead LeadOf(std::uint8_t byte)
{
    if (byte < 0xC2 || byte > 0xF4) {
        return {0, 0, 0};
    }
    if (byte < 0xE0) {
        return {1, 0x80, 0xBF};
    }
    if (byte < 0xF0) {
        const auto low = static_cast<std::uint8_t>(byte == 0xE0 ? 0xA0 : 0x80);
        const auto high = static_cast<std::uint8_t>(byte == 0xED ? 0x9F : 0xBF);
        return {2, low, high};
    }
    const auto low = static_cast<std::uint8_t>(byte == 0xF0 ? 0x90 : 0x80);
    const auto high = static_cast<std::uint8_t>(byte == 0xF4 ? 0x8F : 0xBF);
    return {3, low, high};
}

/// The step at a byte that is not ASCII. An invalid step covers the longest start of a sequence that could be valid.
Step DecodeUtf8Slowly(std::string_view text, std::size_t at)
{
    const auto first = static_cast<std::uint8_t>(text[at]);
    Lead lead = LeadOf(first);
    if (lead.following == 0) {
        return {kReplacement, 1, false};
    }
    char32_t codePoint = first & (0x3Fu >> lead.following);
    for (std::size_t i = 1; i <= lead.following; ++i) {
        const std::uint8_t next = at + i < text.size() ? static_cast<std::uint8_t>(text[at + i]) : std::uint8_t{0};
        if (next < lead.low || next > lead.high) {
            return {kReplacement, i, false};
        }
        codePoint = codePoint << 6 | (next & 0x3Fu);
        lead.low = 0x80;
        lead.high = 0xBF;
    }
    return {codePoint, lead.following + 1, true};
}

constexpr bool IsSurrogate(char32_t unit)
{
    return (unit & 0xFFFFF800u) == 0xD800u;
}

/// The same, faster for two and three bytes, which nearly all text that is not ASCII consists of.
Step DecodeUtf8(std::string_view text, std::size_t at)
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data() + at);
    const std::size_t left = text.size() - at;
    if (left >= 3 && (bytes[0] & 0xF0u) == 0xE0u && (bytes[1] & 0xC0u) == 0x80u && (bytes[2] & 0xC0u) == 0x80u) {
        const char32_t codePoint = (bytes[0] & 0xFu) << 12 | (bytes[1] & 0x3Fu) << 6 | (bytes[2] & 0x3Fu);
        if (codePoint >= 0x800 && !IsSurrogate(codePoint)) {
            return {codePoint, 3, true};
        }
    } else if (left >= 2 && (bytes[0] & 0xE0u) == 0xC0u && bytes[0] >= 0xC2u && (bytes[1] & 0xC0u) == 0x80u) {
        return {(bytes[0] & 0x1Fu) << 6 | (bytes[1] & 0x3Fu), 2, true};
    }
    return DecodeUtf8Slowly(text, at);
}

Step DecodeUtf16(std::u16string_view text, std::size_t at)
{
    const char16_t unit = text[at];
    if (!IsSurrogate(unit)) {
        return {unit, 1, true};
    }
    const char16_t next = at + 1 < text.size() ? text[at + 1] : char16_t{0};
    if ((unit & 0xFC00u) != 0xD800u || (next & 0xFC00u) != 0xDC00u) {
        return {kReplacement, 1, false};
    }
    return {0x10000u + ((unit & 0x3FFu) << 10) + (next & 0x3FFu), 2, true};
}

constexpr std::size_t kBlock = 16;

/// Whether the next kBlock bytes exist and are ASCII. Two loads of eight bytes need no alignment.
bool IsAsciiBlock(std::string_view text, std::size_t at)
{
    if (text.size() - at < kBlock) {
        return false;
    }
    std::uint64_t words[2];
    std::memcpy(words, text.data() + at, sizeof(words));
    return ((words[0] | words[1]) & 0x8080808080808080u) == 0;
}

bool IsAsciiBlock(std::u16string_view text, std::size_t at)
{
    if (text.size() - at < kBlock) {
        return false;
    }
    std::uint64_t words[4];
    std::memcpy(words, text.data() + at, sizeof(words));
    return ((words[0] | words[1] | words[2] | words[3]) & 0xFF80FF80FF80FF80u) == 0;
}

bool IsAscii(char byte)
{
    return static_cast<std::uint8_t>(byte) < 0x80;
}

bool IsAscii(char16_t unit)
{
    return unit < 0x80;
}

/// The first place at or after `at` that does not hold ASCII.
template <class View>
std::size_t SkipAscii(View text, std::size_t at)
{
    while (IsAsciiBlock(text, at)) {
        at += kBlock;
    }
    while (at < text.size() && IsAscii(text[at])) {
        ++at;
    }
    return at;
}

constexpr std::size_t Utf8Length(char32_t codePoint)
{
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

/// Writes a code point and returns the place after it.
char* Write(char* out, char32_t codePoint)
{
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80u | (codePoint >> shift & 0x3Fu));
    };
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
        return out;
    }
    if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0u | codePoint >> 6);
    } else if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0u | codePoint >> 12);
        *out++ = continuation(6);
    } else {
        *out++ = static_cast<char>(0xF0u | codePoint >> 18);
        *out++ = continuation(12);
        *out++ = continuation(6);
    }
    *out++ = continuation(0);
    return out;
}

char16_t* Write(char16_t* out, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        *out = static_cast<char16_t>(codePoint);
        return out + 1;
    }
    out[0] = static_cast<char16_t>(0xD7C0u + (codePoint >> 10));
    out[1] = static_cast<char16_t>(0xDC00u | (codePoint & 0x3FFu));
    return out + 2;
}

/// The step at any byte.
Step StepAt(std::string_view text, std::size_t at)
{
    return IsAscii(text[at]) ? Step{static_cast<std::uint8_t>(text[at]), 1, true} : DecodeUtf8(text, at);
}

Step Decode(std::string_view text, std::size_t at)
{
    return DecodeUtf8(text, at);
}

Step Decode(std::u16string_view text, std::size_t at)
{
    return DecodeUtf16(text, at);
}

std::size_t LengthIn(char, char32_t codePoint)
{
    return Utf8Length(codePoint);
}

std::size_t LengthIn(char16_t, char32_t codePoint)
{
    return codePoint < 0x10000 ? 1 : 2;
}

/// What measuring a text for its conversion finds.
struct Measure {
    std::size_t length = 0;        ///< of the converted text, with a replacement for every invalid step
    std::size_t invalid = kValid;  ///< where the first invalid step lies
};

template <class Out, class View>
Measure MeasureConversion(View text)
{
    Measure measure;
    for (std::size_t at = 0; at < text.size();) {
        if (IsAscii(text[at])) {
            const std::size_t end = SkipAscii(text, at);
            measure.length += end - at;
            at = end;
            continue;
        }
        const Step step = Decode(text, at);
        if (!step.valid && measure.invalid == kValid) {
            measure.invalid = at;
        }
        measure.length += LengthIn(Out{}, step.codePoint);
        at += step.length;
    }
    return measure;
}

/// Copies ASCII from one width to the other as far as it reaches; a loop of known length becomes vector instructions.
template <class Out, class View>
Out* CopyAscii(Out* out, View text, std::size_t& at)
{
    std::size_t i = at;
    for (; IsAsciiBlock(text, i); i += kBlock, out += kBlock) {
        for (std::size_t k = 0; k < kBlock; ++k) {
            out[k] = static_cast<Out>(text.data()[i + k]);
        }
    }
    for (; i < text.size() && IsAscii(text[i]); ++i) {
        *out++ = static_cast<Out>(text[i]);
    }
    at = i;
    return out;
}

/// Converts a measured text into exactly `length` bytes (units).
template <class Out, class View>
std::basic_string<Out> Convert(View text, std::size_t length)
{
    std::basic_string<Out> result(length, Out{});
    Out* out = result.data();
    for (std::size_t at = 0; at < text.size();) {
        if (IsAscii(text[at])) {
            out = CopyAscii(out, text, at);
        } else {
            const Step step = Decode(text, at);
            out = Write(out, step.codePoint);
            at += step.length;
        }
    }
    return result;
}

template <class View>
std::size_t FindInvalid(View text)
{
    for (std::size_t at = 0; at < text.size();) {
        if (IsAscii(text[at])) {
            at = SkipAscii(text, at);
            continue;
        }
        const Step step = Decode(text, at);
        if (!step.valid) {
            return at;
        }
        at += step.length;
    }
    return kValid;
}

/// A text that is shorter needs no room reserved.
constexpr std::size_t kShort = 1024;

}  // namespace

std::size_t FindInvalidUtf8(std::string_view text) noexcept
{
    return FindInvalid(text);
}

std::size_t FindInvalidUtf16(std::u16string_view text) noexcept
{
    return FindInvalid(text);
}

std::optional<std::string> ToUtf8(std::u16string_view text)
{
    const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
    std::string utf8;
    if (text.size() > kShort) {
        utf8.reserve(text.size());
    }
    if (AppendUtf8OfUtf16(bytes, kOwnByteOrder, utf8) != bytes.size()) {
        return std::nullopt;
    }
    return utf8;
}

std::optional<std::u16string> ToUtf16(std::string_view text)
{
    if (FindInvalidUtf8(text) != kValid) {
        return std::nullopt;
    }
    std::u16string utf16;
    if (text.size() > kShort) {
        utf16.reserve(LengthInUtf16(text));
    }
    char16_t units[kShort];
    while (!text.empty()) {
        const std::string_view piece = PieceOfUtf8(text, kShort);
        utf16.append(units, WriteUtf16(piece, units));
        text.remove_prefix(piece.size());
    }
    return utf16;
}

std::string ToUtf8Lossy(std::u16string_view text)
{
    return Convert<char>(text, MeasureConversion<char>(text).length);
}

std::u16string ToUtf16Lossy(std::string_view text)
{
    return Convert<char16_t>(text, MeasureConversion<char16_t>(text).length);
}

CodePoint CodePointAt(std::string_view utf8, std::size_t at) noexcept
{
    const Step step = StepAt(utf8, at);
    return {step.codePoint, step.length};
}

bool EqualsUtf16(std::string_view utf8, std::u16string_view utf16) noexcept
{
    std::size_t at = 0;
    for (std::size_t unit = 0; unit < utf16.size();) {
        if (at == utf8.size()) {
            return false;
        }
        const Step left = StepAt(utf8, at);
        const Step right = DecodeUtf16(utf16, unit);
        if (left.codePoint != right.codePoint || !left.valid || !right.valid) {
            return false;
        }
        at += left.length;
        unit += right.length;
    }
    return at == utf8.size();
}

void AppendUtf8(std::string& out, char32_t codePoint)
{
    char buffer[4];
    out.append(buffer, Write(buffer, codePoint));
}

}  // namespace zupm
