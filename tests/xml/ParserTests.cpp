#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

struct RefusalRow {
    std::string_view xml;
    std::string_view refusal;
};

constexpr RefusalRow kRefused[] = {
    {"", "1:1: no element found"},
    {" \n ", "2:2: no element found"},
    {"<a>", "1:4: no element found"},
    {"<a>\n\n  x</b></a>", "3:6: mismatched tag"},
    {"<a/><b/>", "1:5: junk after document element"},
    {"text", "1:1: syntax error"},
    {"<a b='1' b='2'/>", "1:10: duplicate attribute"},
    {"<a b=1/>", "1:6: not well-formed (invalid token)"},
    {"<a>&nothing;</a>", "1:4: undefined entity"},
    {"<a>\x01</a>", "1:4: not well-formed (invalid token)"},
    {"<a>&#0;</a>", "1:4: reference to invalid character number"},
    {"<a>&#xD800;</a>", "1:4: reference to invalid character number"},
    {"<a>]]></a>", "1:6: not well-formed (invalid token)"},
    {"<a>\xC3\xA4\xF0\x9F\x98\x80<</a>", "1:7: not well-formed (invalid token)"},
    {"<a>\r\n\r\n\r<</a>", "4:2: not well-formed (invalid token)"},
    {"\n<?xml version='1.0'?><a/>", "2:1: XML or text declaration not at start of entity"},
    {"<?xml version='1.1'?><a/>", "1:1: unsupported XML version"},
    {"<?xml version='1.0' standalone='maybe'?><a/>", "1:33: XML declaration not well-formed"},
    {"<!DOCTYPE a [<!ENTITY e 'x'>]><a/>", "1:14: entity declarations are not supported"},
    {"<!DOCTYPE a [\n<!ENTITY e SYSTEM 'x'>]><a/>", "2:1: entity declarations are not supported"},
    {"<!DOCTYPE a [<!ENTITY % e 'x'>]><a/>", "1:14: entity declarations are not supported"},
    {"<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'x' NDATA n>]><a/>",
     "1:38: entity declarations are not supported"},
    {"<!DOCTYPE a [<!ENTITY lt '&#38;#60;'>]><a/>", "1:14: entity declarations are not supported"},
    {"<!DOCTYPE a SYSTEM 'x'><a>&e;</a>", "1:27: undefined entity"},
    {"<!DOCTYPE a SYSTEM 'x'><a b='&e;'/>", "1:24: undefined entity"},
    {"<!DOCTYPE a [%p;]><a/>", "1:14: parameter entities are not supported"},
    {"<!DOCTYPE a SYSTEM 'x' [%p;<!ENTITY e 'x'>]><a/>", "1:25: parameter entities are not supported"},
    {std::string_view("<\0a/>", 5), "1:2: not well-formed (invalid token)"},
    {std::string_view("<a>\0</a>", 8), "1:4: not well-formed (invalid token)"},
};

TEST(Parser, RefusesWithLineColumnAndReason)
{
    for (const RefusalRow& row : kRefused) {
        EXPECT_EQ(Refusal(row.xml), row.refusal) << row.xml;
    }
}

struct EncodingRow {
    std::string_view declared;
    UTF_ENCODINGS encoding;
    bool isAccepted;
};

constexpr EncodingRow kDeclarations[] = {
    {"UTF-8", UTF_ENCODINGS::Utf8, true},
    {"utf-8", UTF_ENCODINGS::Utf8Signed, true},
    {"UTF-16", UTF_ENCODINGS::Utf16LittleEndianSigned, true},
    {"UTF-16", UTF_ENCODINGS::Utf16BigEndianSigned, true},
    {"UTF-16LE", UTF_ENCODINGS::Utf16LittleEndian, true},
    {"utf-16be", UTF_ENCODINGS::Utf16BigEndian, true},
    {"iso-8859-1", UTF_ENCODINGS::Iso8859_1, true},
    {"UTF-16", UTF_ENCODINGS::Utf8, false},
    {"UTF-8", UTF_ENCODINGS::Utf16LittleEndianSigned, false},
    {"UTF-16BE", UTF_ENCODINGS::Utf16LittleEndianSigned, false},
    {"ISO-8859-1", UTF_ENCODINGS::Utf8Signed, false},
    {"ISO-8859-15", UTF_ENCODINGS::Utf8, false},
    {"windows-1252", UTF_ENCODINGS::Utf8, false},
    {"US-ASCII", UTF_ENCODINGS::Utf8, false},
};

TEST(Parser, RefusesADeclarationThatIsUnsupportedOrContradictsTheBytes)
{
    for (const EncodingRow& row : kDeclarations) {
        const std::string text = "<?xml version='1.0' encoding='" + std::string(row.declared) + "'?><a/>";
        EXPECT_EQ(Refusal(text, row.encoding) == "accepted", row.isAccepted) << row.declared;
        EXPECT_EQ(Refusal(text), "accepted") << "text that never was a file's may declare " << row.declared;
    }
}

TEST(Parser, RefusesAnUnpairedSurrogateInWideTextAtItsPlace)
{
    constexpr char16_t kText[] = {u'<', u'a', u'>', u'\n', u' ', u'x', 0xD800, u'<', u'/', u'a', u'>'};
    try {
        (void)Parser().Parse(kText, std::size(kText));
        FAIL() << "accepted";
    } catch (const ParsingException& failure) {
        EXPECT_EQ(failure.GetLine(), 2u);
        EXPECT_EQ(failure.GetColumn(), 3u);
    }
}

TEST(Parser, TakesWideText)
{
    const std::u16string text = u"<a>\u65E5\U0001F600</a>";
    const std::unique_ptr<Document> document = Parser().Parse(text.data(), text.size());
    EXPECT_EQ(document->GenerateXML(false).Wide(), text);
}

/// The parser must not scan a large token again with every piece, and the tree must be right across the borders.
TEST(Parser, ReadsTokensLargerThanThePiecesItIsFedIn)
{
    const std::string large(std::size_t{3} << 20, 'x');
    const std::string text = "<a b='" + large + "'><!--" + large + "--><c>" + large + "</c><" + large + "/></a>";
    const std::unique_ptr<Document> document = Parsed(text);
    const Element root = document->GetRoot();
    EXPECT_EQ(root.GetAttribute(u"b").GetText().size(), large.size());
    EXPECT_EQ(Child(root, 0).GetText().size(), large.size());
    EXPECT_EQ(Child(root, 1).GetName().size(), large.size());
    EXPECT_EQ(TextOf(*document), text);
}

TEST(Parser, FindsEveryElementAcrossThePiecesItIsFedIn)
{
    std::string text = "<a>";
    int count = 0;
    while (text.size() < (std::size_t{1} << 20)) {
        text += "<b n='" + std::to_string(count++) + "'>\xE6\x97\xA5</b>";
    }
    text += "</a>";
    const std::unique_ptr<Document> document = Parsed(text);
    int seen = 0;
    for (const Element child : ElementChildren(document->GetRoot())) {
        const std::string number = std::to_string(seen++);
        ASSERT_TRUE(child.GetAttribute(u"n").TextIs(std::u16string(number.begin(), number.end())));
        ASSERT_EQ(child.GetText(), u"\u65E5");
    }
    EXPECT_EQ(seen, count);
}

}  // namespace
}  // namespace AdvXMLParser
