#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

struct LayoutRow {
    std::string_view before;
    std::string_view after;
};

/// The line ends that a file may have.
constexpr std::string_view kLineEnds[] = {"\n", "\r\n", "\r"};

/// A row's text, whose lines end with LF, with other line ends. A text that has CR already stays as it is.
std::string WithLineEnds(std::string_view text, std::string_view lineEnd)
{
    if (text.find('\r') != std::string_view::npos) {
        return std::string(text);
    }
    std::string result;
    for (const char c : text) {
        result.append(c == '\n' ? lineEnd : std::string_view(&c, 1));
    }
    return result;
}

/// Makes the edit in the text with each line end in turn; the result must have the same line ends.
template <class Edit>
void ExpectEdit(std::string_view before, std::string_view after, Edit edit)
{
    for (const std::string_view lineEnd : kLineEnds) {
        EXPECT_EQ(Edited(WithLineEnds(before, lineEnd), edit), WithLineEnds(after, lineEnd));
    }
}

constexpr LayoutRow kAdditions[] = {
    // Like the siblings.
    {"<a>\n  <b/>\n</a>", "<a>\n  <b/>\n  <n/>\n</a>"},
    {"<a>\r\n\t<b/>\r\n</a>", "<a>\r\n\t<b/>\r\n\t<n/>\r\n</a>"},
    {"<a>\n  <!-- x -->\n  <b/>\n</a>", "<a>\n  <!-- x -->\n  <b/>\n  <n/>\n</a>"},
    {"<a>\n  <b/>\n  <!-- last -->\n</a>", "<a>\n  <b/>\n  <!-- last -->\n  <n/>\n</a>"},
    // Empty lines between siblings are not repeated.
    {"<a>\n  <b/>\n\n  <c/>\n</a>", "<a>\n  <b/>\n\n  <c/>\n  <n/>\n</a>"},
    // Siblings on one line.
    {"<a><b/></a>", "<a><b/><n/></a>"},
    {"<a> <b/> </a>", "<a> <b/> <n/></a>"},
    {"<a>\n  <b/></a>", "<a>\n  <b/>\n  <n/></a>"},
    // No siblings: one step below the parent.
    {"<a>\n</a>", "<a>\n  <n/>\n</a>"},
    {"<a/>", "<a><n/></a>"},
    {"<a></a>", "<a><n/></a>"},
    {"<?xml version='1.0'?>\n<a/>", "<?xml version='1.0'?>\n<a>\n  <n/>\n</a>"},
    {"<?xml version='1.0'?>\r\n<a x='1' />", "<?xml version='1.0'?>\r\n<a x='1'>\r\n  <n/>\r\n</a>"},
    // Text is never moved.
    {"<a>text</a>", "<a>text<n/></a>"},
    {"<a>text\n</a>", "<a>text\n  <n/>\n</a>"},
};

TEST(Layout, ANewElementGetsALineLikeItsSiblings)
{
    for (const LayoutRow& row : kAdditions) {
        ExpectEdit(row.before, row.after, [](Element root) { (void)root.AddElementInto(u"n"); });
    }
}

constexpr LayoutRow kNestedAdditions[] = {
    {"<a>\n  <b/>\n</a>", "<a>\n  <b>\n    <n/>\n  </b>\n</a>"},
    {"<a>\n\t<b></b>\n</a>", "<a>\n\t<b>\n\t\t<n/>\n\t</b>\n</a>"},
    {"<a>\n   <b>\n   </b>\n</a>", "<a>\n   <b>\n      <n/>\n   </b>\n</a>"},
    {"<a>\n<b/>\n</a>", "<a>\n<b>\n<n/>\n</b>\n</a>"},
    {"<a><b/></a>", "<a><b><n/></b></a>"},
    {"<a> <b/>\n</a>", "<a> <b><n/></b>\n</a>"},
};

TEST(Layout, AnOnlyChildGoesOneStepBelowItsParent)
{
    for (const LayoutRow& row : kNestedAdditions) {
        ExpectEdit(row.before, row.after, [](Element root) { (void)FirstChild(root).CreateElement(u"n"); });
    }
}

struct RemovalRow {
    std::string_view before;
    int child;
    std::string_view after;
};

constexpr RemovalRow kRemovals[] = {
    {"<a>\n  <b/>\n  <c/>\n</a>", 0, "<a>\n  <c/>\n</a>"},
    {"<a>\n  <b/>\n  <c/>\n</a>", 1, "<a>\n  <b/>\n</a>"},
    {"<a>\r\n\t<b/>\r\n</a>", 0, "<a>\r\n</a>"},
    // Empty lines stay.
    {"<a>\n  <b/>\n\n  <c/>\n</a>", 0, "<a>\n\n  <c/>\n</a>"},
    {"<a>\n  <b/>\n\n  <c/>\n</a>", 1, "<a>\n  <b/>\n\n</a>"},
    {"<a>\n  <b/>  \n  <c/>\n</a>", 0, "<a>\n  <c/>\n</a>"},
    {"<a><b/><c/></a>", 0, "<a><c/></a>"},
    {"<a><b/><c/></a>", 1, "<a><b/></a>"},
    {"<a>\n  <b/><c/>\n</a>", 0, "<a>\n  <c/>\n</a>"},
    {"<a>\n  <b/><c/>\n</a>", 1, "<a>\n  <b/>\n</a>"},
    {"<a>\n  <!-- b -->\n  <b/>\n  <c>1</c>\n</a>", 0, "<a>\n  <!-- b -->\n  <c>1</c>\n</a>"},
    {"<a>\n  <b/> <!-- after -->\n  <c/>\n</a>", 0, "<a>\n   <!-- after -->\n  <c/>\n</a>"},
    {"<a>1<b/>2</a>", 0, "<a>12</a>"},
    {"<a>1<b>x</b>2<c/>3</a>", 1, "<a>1<b>x</b>23</a>"},
    {"<a>1<b/>2<c d='1'>x</c></a>", 0, "<a>12<c d='1'>x</c></a>"},
    {"<a><b/></a>", 0, "<a></a>"},
};

TEST(Layout, ADeletedElementTakesItsOwnLineWithIt)
{
    for (const RemovalRow& row : kRemovals) {
        ExpectEdit(row.before, row.after, [&](Element root) { Child(root, row.child).Delete(); });
    }
}

TEST(Layout, RemovingAnOnlyChildAndAddingItAgainGivesTheSameText)
{
    for (const std::string_view text : {
             "<a>\r\n  <b>\r\n    <c d='1'/>\r\n  </b>\r\n</a>",
             "<a>\n<b>\n<c/>\n</b>\n</a>",
             "<a><b>\n<c/>\n</b></a>",
             "<a><b><c/></b></a>",
             "<a>\n\t<b>\n\t\t<!-- kept -->\n\t\t<c/>\n\t</b>\n</a>",
         }) {
        const std::string after = Edited(text, [](Element root) {
            Document copy(u"copy");
            Element parent = FirstChild(root);
            (void)copy.GetRoot().Add(FirstChild(parent).Clone());
            FirstChild(parent).Delete();
            (void)parent.Add(FirstChild(copy.GetRoot()).Clone());
        });
        EXPECT_EQ(after, text);
    }
}

TEST(Layout, ASubtreeOnOneLineIsLaidOutTwoLevelsDeep)
{
    const std::unique_ptr<Document> source =
        Parsed("<s><p i='1'><q><r>v</r><r/></q><q>text<r/></q><q><r><t/></r></q></p></s>");
    const std::string after =
        Edited("<a>\n  <b/>\n</a>", [&](Element root) { (void)root.Add(FirstChild(source->GetRoot()).Clone()); });
    EXPECT_EQ(after,
              "<a>\n  <b/>\n"
              "  <p i='1'>\n"
              "    <q>\n      <r>v</r>\n      <r/>\n    </q>\n"
              "    <q>text<r/></q>\n"
              "    <q>\n      <r><t/></r>\n    </q>\n"
              "  </p>\n</a>");
}

TEST(Layout, ASubtreeWithLineBreaksKeepsItsBytes)
{
    const std::unique_ptr<Document> source = Parsed("<s><p>\n <q><r/></q></p></s>");
    const std::string after =
        Edited("<a>\n  <b/>\n</a>", [&](Element root) { (void)root.Add(FirstChild(source->GetRoot()).Clone()); });
    EXPECT_EQ(after, "<a>\n  <b/>\n  <p>\n <q><r/></q></p>\n</a>");
}

TEST(Layout, InAFileWithoutLineBreaksNothingIsLaidOut)
{
    const std::unique_ptr<Document> source = Parsed("<s><p><q><r/></q></p></s>");
    const std::string after =
        Edited("<a><b/></a>", [&](Element root) { (void)root.Add(FirstChild(source->GetRoot()).Clone()); });
    EXPECT_EQ(after, "<a><b/><p><q><r/></q></p></a>");
}

TEST(Layout, APrivateCopyStillKnowsItsIndentation)
{
    const std::unique_ptr<Document> source = Parsed("<a>\n    <p>\n        <s n='1'/>\n    </p>\n</a>");
    Document copy(u"copy");
    Element product = copy.GetRoot().Add(FirstChild(source->GetRoot()).Clone());
    Element section = product.AddElementInto(u"s");
    (void)section.CreateElement(u"v");
    EXPECT_EQ(TextOf(copy),
              "<copy><p>\n        <s n='1'/>\n        <s>\n            <v/>\n        </s>\n    </p></copy>");
}

}  // namespace
}  // namespace AdvXMLParser
