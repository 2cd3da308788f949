#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

struct TextRow {
    std::string_view xml;
    std::u16string_view text;
};

constexpr TextRow kTexts[] = {
    {"<a/>", u""},
    {"<a></a>", u""},
    {"<a> x </a>", u" x "},
    {"<a>&lt;&amp;&gt;&quot;&apos;</a>", u"<&>\"'"},
    {"<a>&#65;&#x42;&#x1F600;</a>", u"AB\U0001F600"},
    {"<a>\r\n1\r2\n</a>", u"\n1\n2\n"},
    {"<a>&#13;&#10;</a>", u"\r\n"},
    {"<a><![CDATA[<&amp;\r\n]]></a>", u"<&amp;\n"},
    {"<a>1<!-- not & this -->2<?nor this?>3</a>", u"123"},
    {"<a>1<b>inner</b>2<c/>3</a>", u"123"},
    {"<a><![CDATA[a]]]]><![CDATA[>b]]></a>", u"a]]>b"},
    {"<a>\xE6\x97\xA5\xF0\x9F\x98\x80</a>", u"\u65E5\U0001F600"},
};

TEST(Text, IsTheCharacterDataDirectlyInside)
{
    for (const TextRow& row : kTexts) {
        EXPECT_EQ(Parsed(row.xml)->GetRoot().GetText(), row.text) << row.xml;
    }
}

constexpr TextRow kWrittenTexts[] = {
    {"<a>plain</a>", u"plain"},
    {"<a>&lt;&amp;&gt;\"'</a>", u"<&>\"'"},
    {"<a>1&#13;\n2&#13;3\n</a>", u"1\r\n2\r3\n"},
    {"<a>\t </a>", u"\t "},
    {"<a>]]&gt;</a>", u"]]>"},
    {"<a>\xF0\x9F\x98\x80</a>", u"\U0001F600"},
    {"<a>\x7F\xC2\x85</a>", u"\u007F\u0085"},
};

TEST(Text, WrittenIntoAnEmptyTagOpensIt)
{
    for (const TextRow& row : kWrittenTexts) {
        EXPECT_EQ(Edited("<a />", [&](Element root) { root.SetText(row.text); }), row.xml);
        EXPECT_EQ(Edited("<a>old<b/>\n</a>", [&](Element root) { root.SetText(row.text); }), row.xml);
        EXPECT_EQ(Parsed(row.xml)->GetRoot().GetText(), row.text) << row.xml;
    }
}

TEST(Text, AddTextAppendsAfterTheLastChild)
{
    EXPECT_EQ(Edited("<a>1<b/>2</a>", [](Element root) { root.AddText(u"<3"); }), "<a>1<b/>2&lt;3</a>");
    EXPECT_EQ(Edited("<a/>", [](Element root) { root.AddText(u""); }), "<a/>");
}

TEST(Text, DeleteChildrenRemovesElementsTextAndComments)
{
    EXPECT_EQ(Edited("<a x='1'>1<b><c/></b><!-- 2 --></a>", [](Element root) { root.DeleteChildren(); }),
              "<a x='1'></a>");
    EXPECT_EQ(Edited("<a/>", [](Element root) { root.DeleteChildren(); }), "<a/>");
}

TEST(Text, SetTextRemovesCommentsEvenWhenTheTextIsTheSame)
{
    EXPECT_EQ(Edited("<a>1<!-- x --></a>", [](Element root) { root.SetText(u"1"); }), "<a>1</a>");
    EXPECT_EQ(Edited("<a>1<b/></a>", [](Element root) { root.SetText(u"1"); }), "<a>1</a>");
}

constexpr std::u16string_view kUnholdable[] = {
    std::u16string_view(u"\0", 1),
    u"a\u0001",
    u"\u001F",
    u"\uFFFE",
    u"\uFFFF",
    std::u16string_view(u"\xD800", 1),
    std::u16string_view(u"x\xDC00", 2),
    std::u16string_view(u"\xDC00\xD800", 2),
};

TEST(Text, WhatXmlCannotHoldIsRefusedAndTheOldTextStays)
{
    constexpr std::string_view before = "<a b='1'>old</a>";
    for (const std::u16string_view text : kUnholdable) {
        const std::string after = Edited(before, [&](Element root) {
            EXPECT_THROW(root.SetText(text), InvalidCharacterException);
            EXPECT_THROW(root.AddText(text), InvalidCharacterException);
            EXPECT_THROW(root.GetAttribute(u"b").SetText(text), InvalidCharacterException);
            EXPECT_THROW(SetAttribute(root, u"new", text), InvalidCharacterException);
        });
        EXPECT_EQ(after, before);
    }
}

TEST(Text, NamesThatAreNotValidAreRefused)
{
    for (const std::u16string_view name : {u"", u"1a", u"a b", u"a>", u"-a", u"a\u00E4="}) {
        const std::string after = Edited("<a/>", [&](Element root) {
            EXPECT_THROW(root.AddElementInto(name), InvalidCharacterException);
            EXPECT_THROW(root.CreateAttribute(name), InvalidCharacterException);
        });
        EXPECT_EQ(after, "<a/>");
    }
}

}  // namespace
}  // namespace AdvXMLParser
