#include "text/Transcode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "text/Utf.h"

namespace zupm {
namespace {

constexpr ByteOrder kOrders[] = {ByteOrder::LittleEndian, ByteOrder::BigEndian};

/// What a conversion by the plain rule gives: the text up to the first fault, and the number of bytes before that.
struct Plain {
    std::string utf8;
    std::size_t read = 0;
};

/// The plain rule, character by character, to compare the fast conversions with.
Plain DecodeSlowly(std::string_view bytes, ByteOrder order)
{
    Plain plain;
    while (plain.read + 1 < bytes.size()) {
        char32_t codePoint = UnitAt(bytes, plain.read, order);
        std::size_t length = 2;
        if (codePoint >= 0xD800 && codePoint < 0xE000) {
            const std::size_t next = plain.read + 2;
            const char32_t low = next + 1 < bytes.size() ? UnitAt(bytes, next, order) : 0;
            if (codePoint >= 0xDC00 || low < 0xDC00 || low >= 0xE000) {
                return plain;
            }
            codePoint = 0x10000 + (codePoint - 0xD800) * 0x400 + (low - 0xDC00);
            length = 4;
        }
        AppendUtf8(plain.utf8, codePoint);
        plain.read += length;
    }
    return plain;
}

std::string BytesOf(std::u16string_view text, ByteOrder order)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const char halves[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
        bytes += halves[order == ByteOrder::LittleEndian ? 0 : 1];
        bytes += halves[order == ByteOrder::LittleEndian ? 1 : 0];
    }
    return bytes;
}

/// Decodes units in both orders and compares the result with the plain rule's.
void ExpectDecodesAsPlain(std::u16string_view text)
{
    for (const ByteOrder order : kOrders) {
        const std::string bytes = BytesOf(text, order);
        const Plain plain = DecodeSlowly(bytes, order);
        std::string utf8 = "before";
        ASSERT_EQ(AppendUtf8OfUtf16(bytes, order, utf8), plain.read) << text.size();
        ASSERT_EQ(utf8, "before" + plain.utf8) << text.size();
    }
    const Plain plain = DecodeSlowly(BytesOf(text, kOwnByteOrder), kOwnByteOrder);
    const bool isValid = plain.read == 2 * text.size();
    ASSERT_EQ(ToUtf8(text), isValid ? std::optional(plain.utf8) : std::nullopt);
    ASSERT_EQ(FindInvalidUtf16(text), isValid ? kValid : plain.read / 2);
}

/// Encodes valid text in all ways and compares the results with `text`.
void ExpectEncodesTo(std::string_view utf8, std::u16string_view text)
{
    for (const ByteOrder order : kOrders) {
        std::string bytes = "before";
        AppendUtf16OfUtf8(utf8, order, bytes);
        ASSERT_EQ(bytes, "before" + BytesOf(text, order)) << text.size();
    }
    ASSERT_EQ(LengthInUtf16(utf8), text.size());
    std::u16string written(text.size() + 1, u'!');
    ASSERT_EQ(WriteUtf16(utf8, written.data()), text.size());
    ASSERT_EQ(written, std::u16string(text) + u'!');
    ASSERT_EQ(ToUtf16(utf8), text);
    ASSERT_EQ(FindInvalidUtf8(utf8), kValid);
}

/// One to three units each: a boundary of every length of UTF-8, a pair, and what is half a pair or two in disorder.
const std::u16string kInserts[] = {
    {u'\x7F'},        {u'\x80'},      {u'\x7FF'},       {u'\x800'},       {u'\xD7FF'},
    {u'\xE000'},      {u'\xFFFF'},    {0xD800, 0xDC00}, {0xDBFF, 0xDFFF}, {0xD83D, 0xDE00},
    {0xD800},         {0xDBFF},       {0xDC00},         {0xDFFF},         {0xDC00, 0xD800},
    {0xD800, 0xD800}, {0xD800, u'a'}, {u'a', 0xDC00},   {0xD800, 0xE000}, {0xD800, 0xDBFF, 0xDC00},
};

TEST(Transcode, EveryInsertAtEveryPlaceOfEveryLength_DecodesAsByThePlainRule)
{
    for (std::size_t length = 0; length <= 70; ++length) {
        const std::u16string ascii(length, u'x');
        ASSERT_NO_FATAL_FAILURE(ExpectDecodesAsPlain(ascii));
        for (std::size_t at = 0; at <= length; ++at) {
            for (const std::u16string& insert : kInserts) {
                ASSERT_NO_FATAL_FAILURE(ExpectDecodesAsPlain(std::u16string(ascii).insert(at, insert)));
            }
        }
    }
}

TEST(Transcode, EveryInsertAroundTheEndOfAPiece_DecodesAsByThePlainRule)
{
    for (std::size_t length = 4096 - 4; length <= 4096 + 4; ++length) {
        for (const std::u16string& insert : kInserts) {
            const std::u16string text = std::u16string(length, u'x') + insert;
            ASSERT_NO_FATAL_FAILURE(ExpectDecodesAsPlain(text));
            ASSERT_NO_FATAL_FAILURE(ExpectDecodesAsPlain(text + std::u16string(40, u'y')));
        }
    }
}

TEST(Transcode, HalfAUnit_IsNotRead)
{
    for (const ByteOrder order : kOrders) {
        for (std::size_t length = 0; length <= 70; ++length) {
            const std::string bytes = BytesOf(std::u16string(length, u'x'), order) + "x";
            std::string utf8;
            EXPECT_EQ(AppendUtf8OfUtf16(bytes, order, utf8), 2 * length);
            EXPECT_EQ(utf8, std::string(length, 'x'));
        }
    }
}

TEST(Transcode, BytesWithoutAlignment_Decode)
{
    const std::u16string text = std::u16string(50, u'x') + u'\xE4' + std::u16string(50, u'y');
    for (const ByteOrder order : kOrders) {
        const std::string bytes = "!" + BytesOf(text, order);
        std::string utf8;
        EXPECT_EQ(AppendUtf8OfUtf16(std::string_view(bytes).substr(1), order, utf8), bytes.size() - 1);
        EXPECT_EQ(utf8, std::string(50, 'x') + "\xC3\xA4" + std::string(50, 'y'));
    }
}

TEST(Transcode, EveryValidInsertAtEveryPlaceOfEveryLength_Encodes)
{
    for (std::size_t length = 0; length <= 70; ++length) {
        const std::u16string ascii(length, u'x');
        for (std::size_t at = 0; at <= length; ++at) {
            for (std::size_t i = 0; i < 10; ++i) {  // the valid ones come first
                const std::u16string text = std::u16string(ascii).insert(at, kInserts[i]);
                const Plain plain = DecodeSlowly(BytesOf(text, kOwnByteOrder), kOwnByteOrder);
                ASSERT_NO_FATAL_FAILURE(ExpectEncodesTo(plain.utf8, text));
            }
        }
    }
}

/// A text of runs: ASCII, other characters, and, where `mayBeInvalid`, single surrogates.
std::u16string RandomText(std::mt19937& random, bool mayBeInvalid)
{
    std::u16string text;
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    for (std::uint32_t runs = below(12); runs > 0; --runs) {
        const std::uint32_t kind = below(mayBeInvalid ? 40 : 39);
        const std::uint32_t longest = below(20) == 0 ? 9000 : 40;
        for (std::uint32_t length = kind == 39 ? 1 : below(longest); length > 0; --length) {
            if (kind < 20) {
                text += static_cast<char16_t>(below(0x80));
            } else if (kind < 36) {
                text += static_cast<char16_t>(0x80 + below(kind < 30 ? 0x780 : 0xD780));
            } else if (kind < 39) {
                text += static_cast<char16_t>(0xD800 + below(0x400));
                text += static_cast<char16_t>(0xDC00 + below(0x400));
            } else {
                text += static_cast<char16_t>(0xD800 + below(0x800));
            }
        }
    }
    return text;
}

TEST(Transcode, RandomTexts_ConvertAsByThePlainRule)
{
    std::mt19937 random(20);
    for (int i = 0; i < 400; ++i) {
        ASSERT_NO_FATAL_FAILURE(ExpectDecodesAsPlain(RandomText(random, true)));
        const std::u16string text = RandomText(random, false);
        const Plain plain = DecodeSlowly(BytesOf(text, kOwnByteOrder), kOwnByteOrder);
        ASSERT_NO_FATAL_FAILURE(ExpectEncodesTo(plain.utf8, text));
    }
}

void ExpectBackAsLatin1(const std::string& utf8, const std::string& bytes)
{
    std::string back;
    AppendLatin1OfUtf8(utf8, back);
    ASSERT_EQ(back, bytes);
    ASSERT_TRUE(FitsLatin1(utf8));
}

TEST(Transcode, CharactersBeyondLatin1_DoNotFitInIt)
{
    for (const std::string_view beyond : {"\xC4\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xF0\x90\x80\x80"}) {
        for (std::size_t at = 0; at <= 40; ++at) {
            EXPECT_FALSE(FitsLatin1(std::string(40, 'x').insert(at, beyond)));
        }
    }
}

TEST(Transcode, EveryByteOfLatin1AtEveryPlace_BecomesItsCharacter)
{
    for (std::size_t at = 0; at <= 70; ++at) {
        for (int byte = 0; byte <= 0xFF; ++byte) {
            std::string bytes(70, 'x');
            bytes.insert(at, 1, static_cast<char>(byte));
            std::string expected(at, 'x');
            AppendUtf8(expected, static_cast<char32_t>(byte));
            expected.append(70 - at, 'x');
            std::string utf8;
            AppendUtf8OfLatin1(bytes, utf8);
            ExpectBackAsLatin1(utf8, bytes);
            ASSERT_EQ(utf8, expected);
        }
    }
}

TEST(Transcode, LongLatin1_BecomesItsCharacters)
{
    const std::string bytes(20'000, '\xE4');
    std::string expected;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        expected += "\xC3\xA4";
    }
    std::string utf8;
    AppendUtf8OfLatin1(bytes, utf8);
    ExpectBackAsLatin1(utf8, bytes);
    EXPECT_EQ(utf8, expected);
}

TEST(Transcode, APieceEndsBetweenTwoCharacters)
{
    const std::string_view text = "a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80z";
    constexpr std::size_t kEnds[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (std::size_t size = 0; size < std::size(kEnds); ++size) {
        EXPECT_EQ(PieceOfUtf8(text, size), text.substr(0, kEnds[size])) << size;
    }
}

/// A text of 70 bytes is not valid where the first byte beyond ASCII is alone, wherever that is.
TEST(Transcode, InvalidUtf8AtEveryPlaceOfEveryLength_IsFound)
{
    for (std::size_t length = 0; length <= 70; ++length) {
        for (std::size_t at = 0; at <= length; ++at) {
            for (const std::string_view insert : {"\x80", "\xC3", "\xE6\x97", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
                const std::string text = std::string(length, 'x').insert(at, insert);
                ASSERT_EQ(FindInvalidUtf8(text), at);
                ASSERT_FALSE(ToUtf16(text).has_value());
            }
        }
    }
}

}  // namespace
}  // namespace zupm
