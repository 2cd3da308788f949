#include "text/Utf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

namespace zupm {
namespace {

/// The plain textbook rule, to compare the fast one with.
std::string EncodeSlowly(char32_t codePoint)
{
    const auto byte = [](char32_t value) { return static_cast<char>(value); };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0 | codePoint >> 6), byte(0x80 | (codePoint & 0x3F))};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0 | codePoint >> 12), byte(0x80 | (codePoint >> 6 & 0x3F)), byte(0x80 | (codePoint & 0x3F))};
    }
    return {byte(0xF0 | codePoint >> 18), byte(0x80 | (codePoint >> 12 & 0x3F)), byte(0x80 | (codePoint >> 6 & 0x3F)),
            byte(0x80 | (codePoint & 0x3F))};
}

std::u16string WideOf(char32_t codePoint)
{
    if (codePoint < 0x10000) {
        return {static_cast<char16_t>(codePoint)};
    }
    const char32_t rest = codePoint - 0x10000;
    return {static_cast<char16_t>(0xD800 + (rest >> 10)), static_cast<char16_t>(0xDC00 + (rest & 0x3FF))};
}

TEST(Utf, EveryCodePoint_ConvertsBothWays)
{
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (codePoint == 0xD800) {
            codePoint = 0xE000;
        }
        const std::string narrow = EncodeSlowly(codePoint);
        const std::u16string wide = WideOf(codePoint);
        std::string appended;
        AppendUtf8(appended, codePoint);
        ASSERT_EQ(appended, narrow) << std::hex << static_cast<std::uint32_t>(codePoint);
        ASSERT_EQ(ToUtf16(narrow), wide) << std::hex << static_cast<std::uint32_t>(codePoint);
        ASSERT_EQ(ToUtf8(wide), narrow) << std::hex << static_cast<std::uint32_t>(codePoint);
        const CodePoint read = CodePointAt(narrow, 0);
        ASSERT_TRUE(read.value == codePoint && read.bytes == narrow.size());
        ASSERT_TRUE(EqualsUtf16(narrow, wide)) << std::hex << static_cast<std::uint32_t>(codePoint);
    }
}

/// Whether two bytes are valid UTF-8, by a rule of its own.
bool IsValidPair(unsigned first, unsigned second)
{
    return (first < 0x80 && second < 0x80) || (first >= 0xC2 && first <= 0xDF && second >= 0x80 && second <= 0xBF);
}

TEST(Utf, EveryPairOfBytes_IsValidByTheRuleAlone)
{
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(FindInvalidUtf8(text) == kValid, IsValidPair(first, second)) << first << " " << second;
        }
    }
}

struct InvalidCase {
    const char* label;
    std::string_view text;
    std::size_t place;
    std::u16string_view lossy;
};

constexpr InvalidCase kInvalidUtf8[] = {
    {"lone continuation", "a\x80", 1, u"a\uFFFD"},
    {"overlong slash in two", "\xC0\xAF", 0, u"\uFFFD\uFFFD"},
    {"overlong 7F", "\xC1\xBF", 0, u"\uFFFD\uFFFD"},
    {"overlong in three", "\xE0\x80\xAF", 0, u"\uFFFD\uFFFD\uFFFD"},
    {"overlong 7FF", "\xE0\x9F\xBF", 0, u"\uFFFD\uFFFD\uFFFD"},
    {"overlong in four", "\xF0\x80\x80\xAF", 0, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"overlong FFFF", "\xF0\x8F\xBF\xBF", 0, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"first surrogate", "\xED\xA0\x80", 0, u"\uFFFD\uFFFD\uFFFD"},
    {"last surrogate", "\xED\xBF\xBF", 0, u"\uFFFD\uFFFD\uFFFD"},
    {"past the last code point", "\xF4\x90\x80\x80", 0, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"lead byte F5", "\xF5\x80\x80\x80", 0, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"byte FE", "\xFE", 0, u"\uFFFD"},
    {"byte FF", "\xFF", 0, u"\uFFFD"},
    {"cut after one of two", "ab\xC3", 2, u"ab\uFFFD"},
    {"cut after two of three", "\xE2\x82", 0, u"\uFFFD"},
    {"cut after three of four", "\xF0\x9F\x98", 0, u"\uFFFD"},
    {"cut by a letter", "\xE2\x82z", 0, u"\uFFFDz"},
    {"after a long run", "0123456789abcdef0123456789abcdef\xC3(", 32, u"0123456789abcdef0123456789abcdef\uFFFD("},
};

TEST(Utf, InvalidUtf8_IsFoundRefusedAndReplaced)
{
    for (const InvalidCase& row : kInvalidUtf8) {
        EXPECT_EQ(FindInvalidUtf8(row.text), row.place) << row.label;
        EXPECT_EQ(ToUtf16(row.text), std::nullopt) << row.label;
        EXPECT_EQ(ToUtf16Lossy(row.text), row.lossy) << row.label;
    }
}

struct InvalidWideCase {
    const char* label;
    std::u16string text;
    std::size_t place;
    std::string_view lossy;
};

TEST(Utf, InvalidUtf16_IsFoundRefusedAndReplaced)
{
    const InvalidWideCase rows[] = {
        {"high at the end", {u'a', 0xD800}, 1, "a\xEF\xBF\xBD"},
        {"low alone",
         {0xDC00, u'a'},
         0,
         "\xEF\xBF\xBD"
         "a"},
        {"high, then a letter",
         {0xDBFF, u'a'},
         0,
         "\xEF\xBF\xBD"
         "a"},
        {"two highs, then a low", {0xD83D, 0xD83D, 0xDE00}, 0, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {"the wrong way round", {0xDE00, 0xD83D}, 0, "\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const InvalidWideCase& row : rows) {
        EXPECT_EQ(FindInvalidUtf16(row.text), row.place) << row.label;
        EXPECT_EQ(ToUtf8(row.text), std::nullopt) << row.label;
        EXPECT_EQ(ToUtf8Lossy(row.text), row.lossy) << row.label;
    }
}

TEST(Utf, EqualsUtf16_WantsEveryCodePointAndNoMore)
{
    struct Row {
        const char* label;
        std::string_view narrow;
        std::u16string wide;
        bool isEqual;
    };
    const Row rows[] = {
        {"empty", "", u"", true},
        {"a name", "Na\xC3\xA9\xF0\x9F\x98\x80", u"Na\u00E9\U0001F600", true},
        {"another letter", "Name", u"Namf", false},
        {"another case", "Name", u"name", false},
        {"the first is longer", "Name", u"Nam", false},
        {"the second is longer", "Nam", u"Name", false},
        {"half a pair", "\xF0\x9F\x98\x80", {0xD83D}, false},
        {"a replacement character for an unpaired surrogate", "\xEF\xBF\xBD", {0xD83D}, false},
        {"a replacement character for a stray byte", "\x80", u"\uFFFD", false},
        {"two stray halves", "\x80", {0xD83D}, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(EqualsUtf16(row.narrow, row.wide), row.isEqual) << row.label;
    }
}

TEST(Utf, Empty_IsValid)
{
    EXPECT_EQ(FindInvalidUtf8({}), kValid);
    EXPECT_EQ(FindInvalidUtf16({}), kValid);
    EXPECT_EQ(ToUtf8(u""), "");
    EXPECT_EQ(ToUtf16(""), u"");
}

TEST(Utf, Nulls_AreCharactersLikeOthers)
{
    const std::string narrow("a\0b", 3);
    const std::u16string wide(u"a\0b", 3);
    EXPECT_EQ(ToUtf16(narrow), wide);
    EXPECT_EQ(ToUtf8(wide), narrow);
}

/// A copy whose memory ends where the text does, so that a memory checker sees a read past it.
template <class Unit>
std::unique_ptr<Unit[]> Exactly(const std::basic_string<Unit>& text)
{
    auto copy = std::make_unique<Unit[]>(text.size());
    std::copy(text.begin(), text.end(), copy.get());
    return copy;
}

TEST(Utf, AnyCharacterAtAnyPlaceOfARun_ConvertsExactly)
{
    for (const char32_t codePoint : {U'a', U'\u00E9', U'\u20AC', U'\U0001F600'}) {
        for (std::size_t before = 0; before <= 40; ++before) {
            for (const std::size_t after : {0u, 1u, 15u, 16u, 17u}) {
                const std::string narrow = std::string(before, 'x') + EncodeSlowly(codePoint) + std::string(after, 'y');
                const std::u16string wide =
                    std::u16string(before, u'x') + WideOf(codePoint) + std::u16string(after, u'y');
                const auto narrowCopy = Exactly(narrow);
                const auto wideCopy = Exactly(wide);
                ASSERT_EQ(ToUtf16({narrowCopy.get(), narrow.size()}), wide) << before << " " << after;
                ASSERT_EQ(ToUtf8({wideCopy.get(), wide.size()}), narrow) << before << " " << after;
            }
        }
    }
}

}  // namespace
}  // namespace zupm
