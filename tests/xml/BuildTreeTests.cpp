// What the scanner finds in a text is what the gate finds alone.
#include "xml/BuildTree.h"

#include <gtest/gtest.h>

#include "tests/xml/XmlTestSupport.h"
#include "xml/Exceptions.h"
#include "xml/ExpatGate.h"

namespace AdvXMLParser {
namespace {

/// The tree that `build` builds, as "level:before|start tag|tail|end tag" for each element, or the refusal. Elements on
/// the last level have the text of everything inside them as their tail.
template <class Build>
std::string Description(std::uint32_t levels, Build build)
{
    std::string text;
    try {
        const std::unique_ptr<SpanTree> tree = build();
        std::uint32_t level = 0;
        for (std::uint32_t element = SpanTree::kDocument;;) {
            const std::string_view inside(tree->StartTag(element).data() + tree->StartTag(element).size(),
                                          tree->EndTag(element).data());
            text += std::to_string(level) + ":" + std::string(tree->Before(element)) + "|" +
                    std::string(tree->StartTag(element)) + "|" +
                    std::string(level == levels ? inside : tree->Tail(element)) + "|" +
                    std::string(tree->EndTag(element)) + "\n";
            if (level < levels && tree->FirstChild(element) != SpanTree::kNone) {
                element = tree->FirstChild(element);
                ++level;
                continue;
            }
            while (element != SpanTree::kDocument && tree->NextSibling(element) == SpanTree::kNone) {
                element = tree->Parent(element);
                --level;
            }
            if (element == SpanTree::kDocument) {
                return text;
            }
            element = tree->NextSibling(element);
        }
    } catch (const ParsingException& refusal) {
        return std::to_string(refusal.GetLine()) + ":" + std::to_string(refusal.GetColumn()) + ": " +
               refusal.GetReason();
    }
}

constexpr const char* kTexts[] = {
    "<a/>",
    "<?xml version='1.0'?>\n<!-- b -->\n<a>\n <b c='1'>x</b> y <b/>\n</a>\n<!-- after -->\n",
    "<?xml version='1.0' encoding='UTF-8'?><a/>",
    "<?xml version='1.0' encoding='utf-16'?><a>\n</a>",
    "<?xml version='1.0' encoding='EBCDIC'?><a>\n<</a>",
    "<?xml version='1.1'?><a/>",
    "<!DOCTYPE a><a/>",
    "<!DOCTYPE a>\n<!-- c --><a b='1' >\n<c><d><e/></d></c>text</a  >\n<?p i?>",
    "<!DOCTYPE a [<!ATTLIST c d CDATA 'e'><!ELEMENT a ANY>]>\n<a><c/><c d='f'>&lt;</c></a>",
    "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE a SYSTEM 'x'><a><b>&#65;</b></a>",
    "<?xml version='1.0' encoding='EBCDIC'?><!DOCTYPE a><a><b/></a>",
    "<!DOCTYPE a [<!ENTITY e 'x'>]><a><b/></a>",
    "<!DOCTYPE a SYSTEM 'x'><a>\n<b c='&e;'/></a>",
    "<!DOCTYPE a SYSTEM 'x'><a>\n<b>&e;</b></a>",
    "<!DOCTYPE a><a>\n<b></a>",
    "<!DOCTYPE a><a></a><b/>",
    "<!DOCTYPE a><a",
    "<!DOCTYPE a>",
};

TEST(BuildTree, AnOnlyChildIsTheFirstAndTheLast)
{
    for (const char* text : {"<a/>", "<a></a>", "<a><b/></a>"}) {
        const std::unique_ptr<SpanTree> tree = BuildTree(XmlText(text, UTF_ENCODINGS::Utf8), kAllLevels);
        for (std::uint32_t parent = SpanTree::kDocument; tree->FirstChild(parent) != SpanTree::kNone;
             parent = tree->FirstChild(parent)) {
            EXPECT_EQ(tree->LastChild(parent), tree->FirstChild(parent)) << text;
        }
    }
}

TEST(BuildTree, FindsWhatTheGateFindsAlone)
{
    for (const char* text : kTexts) {
        for (const std::optional<UTF_ENCODINGS> encoding : {std::optional<UTF_ENCODINGS>(), {UTF_ENCODINGS::Utf8}}) {
            for (const std::uint32_t levels : {1u, 2u, 3u, kAllLevels}) {
                const std::string byGate = Description(
                    levels, [&] { return std::make_unique<SpanTree>(text, ExpatGate(text, encoding).ReadRest()); });
                EXPECT_EQ(Description(levels, [&] { return BuildTree(XmlText(text, encoding), levels); }), byGate)
                    << text;
            }
        }
    }
}

TEST(BuildTree, ADeclarationMustFitTheFileAndNothingElse)
{
    const std::string text = "<?xml version='1.0' encoding='UTF-16'?><a/>";
    EXPECT_NO_THROW((void)BuildTree(XmlText(text)));
    EXPECT_NO_THROW((void)BuildTree(XmlText(text, UTF_ENCODINGS::Utf16LittleEndian)));
    EXPECT_THROW((void)BuildTree(XmlText(text, UTF_ENCODINGS::Utf8)), ParsingException);
}

TEST(BuildTree, AfterADoctypeTheScannerReadsOn)
{
    // Only the scanner leaves elements without records.
    const std::unique_ptr<SpanTree> tree = BuildTree(XmlText("<!DOCTYPE a><a><b><c/></b></a>"), 2);
    const std::uint32_t last = tree->FirstChild(tree->FirstChild(SpanTree::kDocument));
    EXPECT_EQ(tree->FirstChild(last), SpanTree::kNone);
    EXPECT_TRUE(tree->MayHideElements(last));
}

struct UncheckedRow {
    std::string_view text;
    std::string_view refusal;
};

constexpr UncheckedRow kUnchecked[] = {
    {"<a>\xC3\xA4</a>", "accepted"},
    {"<!DOCTYPE a><a>\xC3\xA4</a>", "accepted"},
    {"<a>\n\xC3\xA4\x80</a>", "2:2: not valid in its encoding"},
    {"<a>\xED\xA0\x80</a>", "1:4: not valid in its encoding"},
    {"<a></b>\n\x80", "2:1: not valid in its encoding"},
    {"<!DOCTYPE a><a></b>\x80", "1:20: not valid in its encoding"},
    {"<?xml version='1.0' encoding='EBCDIC'?><a>\x80</a>",
     "1:1: the declared encoding is not supported or contradicts the bytes"},
    {"<a></b>", "1:6: mismatched tag"},
};

TEST(BuildTree, BytesThatAreNotValidAreFoundBeforeAnythingElseIsWrong)
{
    for (const UncheckedRow& row : kUnchecked) {
        EXPECT_EQ(Refusal(XmlText::Unchecked(std::string(row.text), UTF_ENCODINGS::Utf8)), row.refusal) << row.text;
    }
}

}  // namespace
}  // namespace AdvXMLParser
