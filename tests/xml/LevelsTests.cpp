// Documents that know only some levels of their elements: every edit gives the bytes that it gives when all are known.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/xml/XmlTestSupport.h"
#include "xml/Levels.h"

namespace AdvXMLParser {
namespace {

constexpr std::string_view kTexts[] = {
    "<a>\n  <b x='1'>\n    <c y='2'>\n      <d>v</d>\n      <d/>\n    </c>\n  </b>\n  <b/>\n</a>",
    "<a>\r\n\t<b x='1'>\r\n\t\t<c y='2'>\r\n\t\t\t<d>v</d>\r\n\t\t</c>\r\n\t</b>\r\n\t<b>t</b>\r\n</a>\r\n",
    "<a><b><c><d>v</d><d/></c><c/></b><b/></a>",
    "<?xml version='1.0'?>\n<a><b><c><d>v</d><d/></c>text<c/></b><b/></a>",
    // On one line, on the lines of their end tags alone, or in other markup.
    "<a>\n  <b><c><d>v</d></c><c/></b>\n  <b/>\n</a>",
    "<a>\n  <b><c><d>v</d\n></c><c/></b\n>\n  <b/>\n</a>",
    "<a>\n  <b><!-- </c\n> --><c><d>v</d></c></b>\n  <b/>\n</a>",
    "<a>\n  <b><c\n><d>v</d></c></b>\n  <b><![CDATA[<c>\r]]></b>\n</a>",
    "<a>\r  <b><c d='>\r'><d>v</d></c></b>\r  <b/>\r</a>",
    "<a>\n  <b>1<!-- <x/> --><c>2<?i <y/>?><d>3</d>4</c>5<c/>6<![CDATA[7]]>&lt;</b>\n  <b>&#56;</b>\n</a>",
    // Read by the gate up to the root, or to the end.
    "<!DOCTYPE a>\n<a>\n  <b x='1'>\n    <c><d>v</d></c>\n  </b>\n  <b/>\n</a>",
    "<!DOCTYPE a [<!ATTLIST c x CDATA 'y'>]><a><b><c><d>v</d></c></b><b/></a>",
};

struct Edit {
    const char* name;
    std::function<void(Element root)> apply;
};

std::vector<Edit> EditsOf(Document& target)
{
    const auto first = [](const Element& root) { return FirstChild(root); };
    return {
        {"copy", [&target, first](Element root) { (void)target.GetRoot().Add(first(root).Clone()); }},
        {"copy of the root", [&target](Element root) { (void)target.GetRoot().Add(root.Clone()); }},
        {"copy into itself", [first](Element root) { (void)root.Add(first(root).Clone()); }},
        {"copy into what may hide elements", [first](Element root) { (void)first(root).Add(Child(root, 1).Clone()); }},
        {"copy after an edit of the start tag",
         [&target, first](Element root) {
             SetAttribute(first(root), u"new", u"<\n");
             (void)target.GetRoot().Add(first(root).Clone());
             (void)first(root).AddElementInto(u"n");
             (void)target.GetRoot().Add(first(root).Clone());
         }},
        {"add an element", [first](Element root) { (void)first(root).AddElementInto(u"n", u"k", u"v", u"t"); }},
        {"add text", [first](Element root) { first(root).AddText(u"<&>"); }},
        {"set text", [first](Element root) { first(root).SetText(u"new"); }},
        {"set the same text", [first](Element root) { first(root).SetText(first(root).GetText()); }},
        {"delete children", [first](Element root) { first(root).DeleteChildren(); }},
        {"delete", [first](Element root) { first(root).Delete(); }},
        {"delete the last", [](Element root) { Child(root, 1).Delete(); }},
        {"many edits",
         [&target, first](Element root) {
             for (int i = 0; i < 3; ++i) {
                 first(root).AddText(u"x");
                 (void)root.Add(first(root).Clone());
                 (void)target.GetRoot().Add(Child(root, 2 + i).Clone());
                 SetAttribute(Child(root, 2), u"i", i % 2 == 0 ? u"even" : u"odd");
             }
             first(root).Delete();
         }},
    };
}

/// What an edit leaves in the document and in the target of copies.
std::string ResultOf(std::string_view text, std::string_view target, std::size_t edit, std::uint32_t levels)
{
    const std::unique_ptr<Document> document = Parser().Parse(XmlText(std::string(text)), levels);
    const std::unique_ptr<Document> copies = Parsed(target);
    EditsOf(*copies)[edit].apply(document->GetRoot());
    return TextOf(*document) + "\n--\n" + TextOf(*copies);
}

TEST(Levels, NoEditDependsOnThem)
{
    const std::unique_ptr<Document> none = Parsed("<t/>");
    const std::vector<Edit> edits = EditsOf(*none);
    for (const std::string_view text : kTexts) {
        for (const std::string_view target : {"<t/>", "<t>\n  <u/>\n</t>", "<t>\r\n</t>", "<t><u/></t>"}) {
            for (std::size_t edit = 0; edit < edits.size(); ++edit) {
                const std::string expected = ResultOf(text, target, edit, kAllLevels);
                for (const std::uint32_t levels : {2u, 3u, 4u}) {
                    EXPECT_EQ(ResultOf(text, target, edit, levels), expected) << edits[edit].name << ", " << levels;
                }
            }
        }
    }
}

/// Every element below one, with its text: "b(c(d:v))".
std::string ShapeOf(const Element& element)
{
    std::string shape = Narrow(element.GetName());
    for (const Element child : ElementChildren(element)) {
        shape += "(" + ShapeOf(child) + ")";
    }
    return shape + ":" + Narrow(element.GetText());
}

TEST(Levels, ACopyKnowsAllOfItsElements)
{
    for (const std::string_view text : kTexts) {
        const std::unique_ptr<Document> whole = Parsed(text);
        for (const std::uint32_t levels : {1u, 2u, 3u, 4u}) {
            const std::unique_ptr<Document> document = Parser().Parse(XmlText(std::string(text)), levels);
            Document copies(u"copies");
            const Element copy = copies.GetRoot().Add(document->GetRoot().Clone());
            EXPECT_EQ(ShapeOf(copy), ShapeOf(whole->GetRoot())) << text << levels;
            const std::unique_ptr<Document> again = Parsed(TextOf(copies));
            EXPECT_EQ(ShapeOf(copies.GetRoot()), ShapeOf(again->GetRoot())) << text << levels;
        }
    }
}

TEST(Levels, AnElementThatIsEditedKnowsAllOfItsElements)
{
    for (const std::uint32_t levels : {2u, 3u, kAllLevels}) {
        const std::unique_ptr<Document> document = Parser().Parse(XmlText(std::string(kTexts[0])), levels);
        Element edited = FirstChild(document->GetRoot());
        edited.AddText(u"x");
        const std::string shape = ShapeOf(FirstChild(Parsed(TextOf(*document))->GetRoot()));
        // The inside of the third level is that of an element that nobody edited.
        EXPECT_EQ(ShapeOf(edited), levels == 3 ? "b(c:\n      \n      \n    ):\n    \n  x" : shape);
        FirstChild(edited).AddText(u"y");
        EXPECT_EQ(ShapeOf(edited), ShapeOf(FirstChild(Parsed(TextOf(*document))->GetRoot())));
    }
}

TEST(Levels, ReadingFindsNoChildrenBelowThem)
{
    const std::unique_ptr<Document> document = Parser().Parse(XmlText("<a><b x='1'>1<c>2</c>3</b></a>"), 2);
    const Element last = FirstChild(document->GetRoot());
    EXPECT_EQ(Narrow(last.GetAttribute(u"x").GetText()), "1");
    EXPECT_TRUE(last.Begin() == last.End());
    EXPECT_EQ(Narrow(last.GetText()), "13");
    EXPECT_TRUE(last.Begin() == last.End());
}

TEST(Levels, EverythingBelowThemIsChecked)
{
    for (const std::string_view text : {"<a><b><c></d></b></a>", "<a><b>&e;</b></a>", "<a><b><c x=''x=''/></b></a>",
                                        "<!DOCTYPE a><a><b><c>&e;</c></b></a>", "<a><b><c><d></c></b></a>"}) {
        for (const std::uint32_t levels : {1u, 2u, kAllLevels}) {
            EXPECT_THROW((void)Parser().Parse(XmlText(std::string(text)), levels), ParsingException) << text;
        }
    }
}

}  // namespace
}  // namespace AdvXMLParser
