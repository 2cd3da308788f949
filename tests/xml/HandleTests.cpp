#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

TEST(Handle, ToADeletedElementIsNullForEver)
{
    const std::unique_ptr<Document> document = Parsed("<a><b c='1'>x<d/></b></a>");
    Element root = document->GetRoot();
    Element deleted = FirstChild(root);
    const Element below = FirstChild(deleted);
    const Attribute attribute = deleted.GetAttribute(u"c");
    deleted.Delete();
    for (int i = 0; i < 10; ++i) {
        (void)root.AddElementInto(u"e");  // reuses the freed records
    }
    EXPECT_TRUE(deleted.IsNull());
    EXPECT_TRUE(below.IsNull());
    EXPECT_TRUE(attribute.IsNull());
    EXPECT_EQ(deleted.GetName(), u"");
    EXPECT_EQ(deleted.GetText(), u"");
    EXPECT_TRUE(deleted.Begin() == deleted.End());
    deleted.SetText(u"y");
    deleted.Delete();
    EXPECT_TRUE(deleted.AddElementInto(u"f").IsNull());
    EXPECT_EQ(TextOf(*document), "<a><e/><e/><e/><e/><e/><e/><e/><e/><e/><e/></a>");
}

TEST(Handle, MadeByDefaultIsNull)
{
    Element null;
    EXPECT_TRUE(null.IsNull());
    EXPECT_TRUE(null.GetAttribute(u"a").IsNull());
    EXPECT_TRUE(null.CreateAttribute(u"a").IsNull());
    EXPECT_TRUE(null.Add(null.Clone()).IsNull());
    EXPECT_FALSE(null.NameIs(u""));
    null.DeleteChildren();
    null.AddText(u"x");
}

TEST(Handle, ChildrenAreElementsOnlyInDocumentOrder)
{
    const std::unique_ptr<Document> document =
        Parsed("<a> text <!-- <no/> --><b/><?pi <no/>?>\n<c><no/></c><![CDATA[<no/>]]><d/></a>");
    std::u16string names;
    for (const Element child : ElementChildren(document->GetRoot())) {
        names += child.GetName();
    }
    EXPECT_EQ(names, u"bcd");
}

TEST(Handle, ChildrenAreCountedUpToALimit)
{
    const std::unique_ptr<Document> document = Parsed("<a>x<b><c/></b><!-- <d/> --><b/><b/></a>");
    EXPECT_EQ(document->GetRoot().CountChildren(10), 3u);
    EXPECT_EQ(document->GetRoot().CountChildren(2), 2u);
    EXPECT_EQ(Child(document->GetRoot(), 1).CountChildren(10), 0u);
    EXPECT_EQ(Element().CountChildren(10), 0u);
}

TEST(Handle, TheDocumentElementCannotBeDeleted)
{
    EXPECT_EQ(Edited("<a/>", [](Element root) { root.Delete(); }), "<a/>");
}

TEST(Handle, NamesCompareExactly)
{
    const std::unique_ptr<Document> document = Parsed("<p:\xC3\xA4\xE6\x97\xA5 x='1'/>");
    const Element root = document->GetRoot();
    EXPECT_TRUE(root.NameIs(u"p:\u00E4\u65E5"));
    EXPECT_FALSE(root.NameIs(u"p:\u00E4"));
    EXPECT_FALSE(root.NameIs(u"p:\u00E4\u65E5x"));
    EXPECT_FALSE(root.NameIs(u"P:\u00E4\u65E5"));
    EXPECT_EQ(root.GetName(), u"p:\u00E4\u65E5");
}

TEST(Handle, ClonesKeepTheirBytesInAnotherDocument)
{
    const std::unique_ptr<Document> source = Parsed("<a><b  c='&#65;'><![CDATA[x]]><!-- y --><d\n/></b></a>");
    Document target(u"root");
    const Element copy = target.GetRoot().Add(FirstChild(source->GetRoot()).Clone());
    EXPECT_EQ(TextOf(target), "<root><b  c='&#65;'><![CDATA[x]]><!-- y --><d\n/></b></root>");
    EXPECT_EQ(copy.GetText(), u"x");
    EXPECT_TRUE(FirstChild(copy).NameIs(u"d"));
}

TEST(Handle, ACloneIntoItsOwnDocumentIsACopy)
{
    const std::string after = Edited("<a><b>1</b></a>", [](Element root) {
        Element copy = root.Add(FirstChild(root).Clone());
        copy.SetText(u"2");
        (void)FirstChild(root).Add(root.Clone());
    });
    EXPECT_EQ(after, "<a><b>1<a><b>1</b><b>2</b></a></b><b>2</b></a>");
}

TEST(Handle, ANewDocumentIsOneEmptyElement)
{
    const Document document(u"PolicyData");
    EXPECT_EQ(TextOf(document), "<PolicyData/>");
    EXPECT_THROW(Document(u"no name"), InvalidCharacterException);
}

}  // namespace
}  // namespace AdvXMLParser
