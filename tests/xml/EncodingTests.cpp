#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"
#include "xml/Encoding.h"

namespace AdvXMLParser {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

struct DetectionRow {
    std::string_view bytes;
    UTF_ENCODINGS encoding;
};

constexpr DetectionRow kDetections[] = {
    {""sv, UTF_ENCODINGS::Utf8},
    {"<a/>"sv, UTF_ENCODINGS::Utf8},
    {"\xEF\xBB\xBF<a/>"sv, UTF_ENCODINGS::Utf8Signed},
    {"\xFF\xFE<\0"sv, UTF_ENCODINGS::Utf16LittleEndianSigned},
    {"\xFE\xFF\0<"sv, UTF_ENCODINGS::Utf16BigEndianSigned},
    {"<\0?\0x\0"sv, UTF_ENCODINGS::Utf16LittleEndian},
    {"\0<\0?\0x"sv, UTF_ENCODINGS::Utf16BigEndian},
    {"<?xml version='1.0' encoding='ISO-8859-1'?>"sv, UTF_ENCODINGS::Iso8859_1},
    {"<?xml version=\"1.0\"\tencoding = \"iso-8859-1\"?>"sv, UTF_ENCODINGS::Iso8859_1},
    {"<?xml version='1.0'?><a encoding='ISO-8859-1'/>"sv, UTF_ENCODINGS::Utf8},
    {"<?xmlx encoding='ISO-8859-1'?>"sv, UTF_ENCODINGS::Utf8},
    {"<?xml encoding"sv, UTF_ENCODINGS::Utf8},
    {"<?xml encoding='"sv, UTF_ENCODINGS::Utf8},
};

TEST(Encoding, IsDetectedFromTheSignatureAndThenFromTheDeclaration)
{
    for (const DetectionRow& row : kDetections) {
        EXPECT_EQ(DetectEncoding(row.bytes), row.encoding) << row.bytes;
    }
}

constexpr UTF_ENCODINGS kUnicode[] = {
    UTF_ENCODINGS::Utf8,
    UTF_ENCODINGS::Utf8Signed,
    UTF_ENCODINGS::Utf16LittleEndian,
    UTF_ENCODINGS::Utf16LittleEndianSigned,
    UTF_ENCODINGS::Utf16BigEndian,
    UTF_ENCODINGS::Utf16BigEndianSigned,
};

TEST(Encoding, UnicodeTextSurvivesAnyLength)
{
    // The text is converted in pieces: characters of every length must survive at the borders.
    for (const std::size_t padding : {0u, 1u, 2u, 3u, 65533u, 65534u, 65535u, 65536u}) {
        std::string text(padding, 'x');
        for (int i = 0; i < 30; ++i) {
            text += "\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80";
        }
        for (const UTF_ENCODINGS encoding : kUnicode) {
            const std::optional<std::string> bytes = Encode(text, encoding, true);
            ASSERT_TRUE(bytes);
            const std::optional<XmlText> decoded = Decode(*bytes, encoding);
            ASSERT_TRUE(decoded);
            EXPECT_EQ(decoded->Utf8(), text);
        }
    }
}

struct InvalidRow {
    std::string_view bytes;
    UTF_ENCODINGS encoding;
    std::uint32_t column;  ///< of the first byte that is not valid
};

constexpr InvalidRow kInvalid[] = {
    {"<a>\x80</a>"sv, UTF_ENCODINGS::Utf8, 4},
    {"<a>\xC0\x80</a>"sv, UTF_ENCODINGS::Utf8, 4},
    {"<a>\xED\xA0\x80</a>"sv, UTF_ENCODINGS::Utf8Signed, 4},
    {"<a>\xF4\x90\x80\x80</a>"sv, UTF_ENCODINGS::Utf8, 4},
    {"<a/>\xE6\x97"sv, UTF_ENCODINGS::Utf8, 5},
    {"<\0a\0/"sv, UTF_ENCODINGS::Utf16LittleEndian, 3},
    {"\x00\xD8<\0"sv, UTF_ENCODINGS::Utf16LittleEndian, 1},
    {"\xFE\xFF\xDC\x00"sv, UTF_ENCODINGS::Utf16BigEndianSigned, 1},
    {"\0<\xD8\x00"sv, UTF_ENCODINGS::Utf16BigEndian, 2},
};

TEST(Encoding, BytesThatAreNotValidAreRefusedAtTheirPlace)
{
    for (const InvalidRow& row : kInvalid) {
        Position invalid;
        EXPECT_FALSE(Decode(std::string(row.bytes), row.encoding, &invalid)) << row.bytes;
        EXPECT_EQ(invalid.line, 1u) << row.bytes;
        EXPECT_EQ(invalid.column, row.column) << row.bytes;
    }
}

TEST(Encoding, Utf8CanBeLeftUncheckedUntilSomebodyNeedsToKnow)
{
    std::optional<XmlText> text = DecodeUnchecked("\xEF\xBB\xBF<a>\x80</a>", UTF_ENCODINGS::Utf8Signed);
    ASSERT_TRUE(text);
    EXPECT_FALSE(text->IsChecked());
    Position invalid;
    EXPECT_FALSE(Check(*text, &invalid));
    EXPECT_EQ(invalid.column, 4u);
    EXPECT_EQ(text->Utf8(), "");
    text = DecodeUnchecked("\xEF\xBB\xBF<a/>", UTF_ENCODINGS::Utf8Signed);
    EXPECT_TRUE(Check(*text));
    EXPECT_TRUE(text->IsChecked());
    EXPECT_EQ(text->Utf8(), "<a/>");
    EXPECT_FALSE(DecodeUnchecked("<\0a"s, UTF_ENCODINGS::Utf16LittleEndian)) << "whatever is converted is checked";
}

struct Latin1Row {
    std::string_view utf8;
    std::optional<std::string_view> bytes;
};

constexpr Latin1Row kLatin1[] = {
    {"<a>\xC3\xA4</a>", "<a>\xE4</a>"},
    {"<a>\xE6\x97\xA5</a>", "<a>&#26085;</a>"},
    {"<a b='\xF0\x9F\x98\x80' c=\">\xE2\x82\xAC\">x</a>", "<a b='&#128512;' c=\">&#8364;\">x</a>"},
    {"<a><![CDATA[1\xE2\x82\xAC"
     "2]]></a>",
     "<a><![CDATA[1]]>&#8364;<![CDATA[2]]></a>"},
    {"<a><!-- \xC3\xBC --></a>", "<a><!-- \xFC --></a>"},
    {"<a><!-- \xE2\x82\xAC --></a>", std::nullopt},
    {"<a><?p \xE2\x82\xAC?></a>", std::nullopt},
    {"<\xE6\x97\xA5/>", std::nullopt},
    {"<a \xE6\x97\xA5='1'/>", std::nullopt},
    {"<!DOCTYPE a [<!-- it's --><!ELEMENT \xE6\x97\xA5 ANY>]><a/>", std::nullopt},
    {"<!DOCTYPE a [<!ATTLIST a b CDATA '>'>]><a>\xE2\x82\xAC</a>",
     "<!DOCTYPE a [<!ATTLIST a b CDATA '>'>]><a>&#8364;</a>"},
};

TEST(Encoding, Latin1WritesReferencesWhereXmlAllowsThem)
{
    for (const Latin1Row& row : kLatin1) {
        const std::optional<std::string> bytes = Encode(std::string(row.utf8), UTF_ENCODINGS::Iso8859_1, true);
        EXPECT_EQ(bytes.has_value(), row.bytes.has_value()) << row.utf8;
        EXPECT_EQ(bytes.value_or(""), row.bytes.value_or("")) << row.utf8;
    }
}

TEST(Encoding, EveryCharacterSurvivesLatin1AsItselfOrAsAReference)
{
    for (char16_t character = 0xA0; character < 0x180; ++character) {
        const std::u16string text(1, character);
        const std::optional<std::string> bytes =
            Encode("<a>" + *zupm::ToUtf8(text) + "</a>", UTF_ENCODINGS::Iso8859_1, false);
        ASSERT_TRUE(bytes);
        std::optional<XmlText> decoded = Decode(*bytes, UTF_ENCODINGS::Iso8859_1);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(Parser().Parse(std::move(*decoded))->GetRoot().GetText(), text) << static_cast<int>(character);
    }
}

TEST(Encoding, EveryLatin1ByteIsACharacter)
{
    std::string bytes;
    for (int byte = 0x20; byte <= 0xFF; ++byte) {
        bytes += static_cast<char>(byte == '<' || byte == '&' ? ' ' : byte);
    }
    const std::optional<XmlText> text = Decode(bytes, UTF_ENCODINGS::Iso8859_1);
    ASSERT_TRUE(text);
    EXPECT_EQ(Encode(text->Utf8(), UTF_ENCODINGS::Iso8859_1, true), bytes);
}

}  // namespace
}  // namespace AdvXMLParser
