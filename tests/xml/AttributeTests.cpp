#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

struct AttributeRow {
    std::string_view xml;
    std::u16string_view value;  ///< of attribute "b"
};

constexpr AttributeRow kValues[] = {
    {"<a b=''/>", u""},
    {"<a b='1'/>", u"1"},
    {"<a  c='2'\n b = \"1\" />", u"1"},
    {"<a bb='2' b='1'>x</a>", u"1"},
    {"<a c='b=\"9\"' b='1'/>", u"1"},
    {"<a c='>' b='1'/>", u"1"},
    {"<a b='x\ty\nz\r\nw'/>", u"x y z w"},
    {"<a b='&#9;&#10;&#13;'/>", u"\t\n\r"},
    {"<a b='&lt;&amp;&#x1F600;'/>", u"<&\U0001F600"},
    {"<a b='\xC3\xA4'/>", u"\u00E4"},
};

TEST(Attribute, ValueIsDecodedAndNormalised)
{
    for (const AttributeRow& row : kValues) {
        const std::unique_ptr<Document> document = Parsed(row.xml);
        const Attribute attribute = document->GetRoot().GetAttribute(u"b");
        EXPECT_EQ(attribute.GetText(), row.value) << row.xml;
        EXPECT_TRUE(attribute.TextIs(row.value)) << row.xml;
        EXPECT_FALSE(attribute.TextIs(u"something else")) << row.xml;
        std::u16string text = u"untouched";
        EXPECT_FALSE(document->GetRoot().ReadAttribute(u"no", text));
        EXPECT_EQ(text, u"untouched");
        EXPECT_TRUE(document->GetRoot().ReadAttribute(u"b", text)) << row.xml;
        EXPECT_EQ(text, row.value) << row.xml;
    }
}

TEST(Attribute, ValuesOfEveryLengthAreDecodedWhereverTheyNeedIt)
{
    for (std::size_t size = 1; size < 20; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            for (const char* piece : {"x", "&amp;", "\t", "\x7F", "\xC3\xA4", "%", "'", "~", " "}) {
                const std::string before(place, 'b');
                const std::string after(size - place - 1, 'c');
                const std::unique_ptr<Document> document = Parsed("<a n=\"" + before + piece + after + "\"/>");
                std::u16string text;
                EXPECT_TRUE(document->GetRoot().ReadAttribute(u"n", text));
                EXPECT_EQ(text, document->GetRoot().GetAttribute(u"n").GetText()) << place << " " << piece;
                EXPECT_EQ(text.size(), size);
            }
        }
    }
}

TEST(Attribute, TwoAreReadAtOnceInAnyOrder)
{
    const auto read = [](std::string_view xml) {
        std::u16string one = u"-";
        std::u16string two = u"-";
        const bool hasBoth = Parsed(xml)->GetRoot().ReadAttributes(u"one", one, u"two", two);
        return Narrow(one) + " " + Narrow(two) + (hasBoth ? " both" : "");
    };
    EXPECT_EQ(read("<a one='1' two='2'/>"), "1 2 both");
    EXPECT_EQ(read("<a x='0' two='2' y='0' one='1'/>"), "1 2 both");
    EXPECT_EQ(read("<a one='' two='&amp;'/>"), " & both");
    EXPECT_EQ(read("<a one='1'/>"), "1 -");
    EXPECT_EQ(read("<a two='2'/>"), "- 2");
    EXPECT_EQ(read("<a/>"), "- -");
    std::u16string text;
    EXPECT_FALSE(Element().ReadAttributes(u"one", text, u"two", text));
}

TEST(Attribute, NamesAreComparedAsCharactersNotAsBytes)
{
    const std::unique_ptr<Document> document = Parsed("<a \xC3\xA9='1' c='2'/>");
    std::u16string text;
    EXPECT_TRUE(document->GetRoot().ReadAttribute(u"\u00E9", text));
    EXPECT_EQ(text, u"1");
    EXPECT_FALSE(document->GetRoot().ReadAttribute(u"\u00C3\u00A9", text)) << "the two bytes as two units";
    EXPECT_FALSE(Element().ReadAttribute(u"c", text));
    EXPECT_TRUE(Parsed("<\xC3\xA9/>")->GetRoot().NameIs(u"\u00E9"));
    EXPECT_FALSE(Parsed("<\xC3\xA9/>")->GetRoot().NameIs(u"\u00C3\u00A9"));
}

TEST(Attribute, IsCompleteWhenItIsCreatedWithAValue)
{
    const std::unique_ptr<Document> document = Parsed("<a b='1'/>");
    Element root = document->GetRoot();
    EXPECT_EQ(root.CreateAttribute(u"c", u"<\"2\">").GetText(), u"<\"2\">");
    EXPECT_EQ(root.CreateAttribute(u"b", u"3").GetText(), u"1") << "an existing one stays as it is";
    EXPECT_THROW(root.CreateAttribute(u"d", u"\x01"), InvalidCharacterException);
    EXPECT_EQ(document->GenerateXML(false).Utf8(), "<a b='1' c=\"&lt;&quot;2&quot;>\"/>");
}

TEST(Attribute, AndTextAreCompleteInANewElement)
{
    const std::unique_ptr<Document> document = Parsed("<a>\n  <b/>\n</a>");
    Element root = document->GetRoot();
    EXPECT_EQ(root.AddElementInto(u"c", u"n", u"\"1\"", u"<x>").GetText(), u"<x>");
    EXPECT_EQ(root.AddElementInto(u"d", u"n", u"").GetText(), u"");
    EXPECT_THROW((void)root.AddElementInto(u"e", u"n", u"\x01"), InvalidCharacterException);
    EXPECT_THROW((void)root.AddElementInto(u"e", u"n", u"1", u"\x01"), InvalidCharacterException);
    EXPECT_EQ(document->GenerateXML(false).Utf8(),
              "<a>\n  <b/>\n  <c n=\"&quot;1&quot;\">&lt;x&gt;</c>\n  <d n=\"\"/>\n</a>");
}

TEST(Attribute, ThatIsMissingIsNullAndReadsAsEmpty)
{
    const std::unique_ptr<Document> document = Parsed("<a b='1'/>");
    const Attribute missing = document->GetRoot().GetAttribute(u"B");
    EXPECT_TRUE(missing.IsNull());
    EXPECT_EQ(missing.GetText(), u"");
    EXPECT_FALSE(missing.TextIs(u""));
    EXPECT_EQ(missing.GetName(), u"");
}

TEST(Attribute, DefaultsOfAnInternalSubsetAreNotApplied)
{
    const std::unique_ptr<Document> document = Parsed("<!DOCTYPE a [<!ATTLIST a b CDATA 'default'>]><a/>");
    EXPECT_TRUE(document->GetRoot().GetAttribute(u"b").IsNull());
}

struct EditRow {
    std::string_view before;
    std::u16string_view value;
    std::string_view after;
};

constexpr EditRow kEdits[] = {
    {"<a b='1'/>", u"2", "<a b='2'/>"},
    {"<a b=\"1\" c='3'>x</a>", u"2", "<a b=\"2\" c='3'>x</a>"},
    {"<a b='1'/>", u"it's \"<&>\"", "<a b='it&apos;s \"&lt;&amp;>\"'/>"},
    {"<a b=\"1\"/>", u"it's \"x\"", "<a b=\"it's &quot;x&quot;\"/>"},
    {"<a b='1'/>", u"\t\r\n ", "<a b='&#9;&#13;&#10; '/>"},
    {"<a/>", u"2", "<a b=\"2\"/>"},
    {"<a />", u"2", "<a b=\"2\" />"},
    {"<a c='1'  >x</a>", u"2", "<a c='1' b=\"2\"  >x</a>"},
    {"<a\n  c='1'\n/>", u"", "<a\n  c='1' b=\"\"\n/>"},
};

TEST(Attribute, SettingChangesTheValueAloneAndCreatesWhatIsMissing)
{
    for (const EditRow& row : kEdits) {
        EXPECT_EQ(Edited(row.before, [&](Element root) { SetAttribute(root, u"b", row.value); }), row.after);
        EXPECT_EQ(Parsed(row.after)->GetRoot().GetAttribute(u"b").GetText(), row.value) << row.after;
    }
}

TEST(Attribute, CreatingAnExistingOneReturnsIt)
{
    EXPECT_EQ(Edited("<a b='1'/>", [](Element root) { EXPECT_EQ(root.CreateAttribute(u"b").GetText(), u"1"); }),
              "<a b='1'/>");
}

TEST(Attribute, DeleteChildrenThenAddTextReplacesTheValue)
{
    const std::string after = Edited("<a b='1'/>", [](Element root) {
        Attribute attribute = root.GetAttribute(u"b");
        attribute.DeleteChildren();
        EXPECT_EQ(attribute.GetText(), u"");
        attribute.AddText(u"2");
        attribute.AddText(u"3");
    });
    EXPECT_EQ(after, "<a b='23'/>");
}

}  // namespace
}  // namespace AdvXMLParser
