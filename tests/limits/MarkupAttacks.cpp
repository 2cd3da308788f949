// Markup: depth, width and length.
#include <algorithm>
#include <string>

#include "tests/limits/Attack.h"

namespace zupm::test {

namespace {

std::string Around(const std::string& content)
{
    return "<F>" + content + "</F>";
}

std::string Levels(std::size_t size)
{
    return Repeated("<d>", size * 3 / 7) + Repeated("</d>", size * 3 / 7 / 3 * 4);
}

std::string LevelsNeverClosed(std::size_t size)
{
    return Repeated("<d>", size);
}

/// A comb: every level of a deep tree closes and opens a branch.
std::string LevelsThatCloseAndOpen(std::size_t size)
{
    const std::size_t depth = size / 21;
    return Repeated("<d>", depth * 3) + Repeated("<d></d>", depth * 7) + Repeated("</d><d></d>", depth * 11 - 7) +
           "</d>";
}

std::string LevelsClosedWrongly(std::size_t size)
{
    const std::string text = Levels(size);
    return text.substr(0, text.size() - 2) + "x>";
}

std::string Elements(std::size_t size)
{
    return Around(Repeated("<a/>", size));
}

std::string ElementsOfDifferentNames(std::size_t size)
{
    return Series(
        "<F>", [](std::size_t number) { return "<" + Letters(number) + "/>"; }, "</F>", size);
}

std::string AttributesOfDifferentNames(std::size_t size)
{
    return Series(
        "<F>", [](std::size_t number) { return "<a " + Letters(number) + "=''/>"; }, "</F>", size);
}

std::string Attribute(std::size_t number)
{
    return " " + Letters(number) + "=''";
}

constexpr std::size_t kManyAttributes = 400'000;
constexpr std::size_t kTooManyAttributes = 500'001;

std::string Attributes(std::size_t count)
{
    std::string attributes;
    for (std::size_t number = 0; number < count; ++number) {
        attributes += Attribute(number);
    }
    return attributes;
}

std::string AttributesOfElements(std::size_t size)
{
    // An attribute takes less than eight bytes.
    const std::string element = "<a" + Attributes(std::min(kManyAttributes, size / 8)) + "/>";
    return Around(Repeated(element, size));
}

std::string OneAttributeTwice(std::size_t size)
{
    return "<F" + Attributes(std::min(kManyAttributes, size / 8)) + " a=''/>" + Repeated("\n", size / 2);
}

std::string TooManyAttributes(std::size_t size)
{
    return "<F" + Attributes(kTooManyAttributes) + "/>" + Repeated("\n", size);
}

std::string References(std::size_t size)
{
    return Around(Repeated("&#65;", size));
}

std::string ReferencesInAnAttribute(std::size_t size)
{
    return "<F a='" + Repeated("&lt;", size) + "'/>";
}

std::string UnknownReferenceAtTheEnd(std::size_t size)
{
    return Around(Repeated("&lt;", size) + "&x;");
}

std::string Comments(std::size_t size)
{
    return Around(Repeated("<!---->", size));
}

std::string Instructions(std::size_t size)
{
    return Around(Repeated("<?p?>", size));
}

std::string CdataSections(std::size_t size)
{
    return Around(Repeated("<![CDATA[]]>", size));
}

std::string ElementName(std::size_t size)
{
    const std::string name(size / 2, 'n');
    return "<" + name + "></" + name + ">";
}

std::string AttributeName(std::size_t size)
{
    return "<F " + std::string(size, 'n') + "=''/>";
}

std::string AttributeValue(std::size_t size)
{
    return "<F a='" + std::string(size, 'v') + "'/>";
}

std::string Text(std::size_t size)
{
    return Around(std::string(size, 'v'));
}

std::string Comment(std::size_t size)
{
    return Around("<!--" + std::string(size, ' ') + "-->");
}

std::string CommentNeverClosed(std::size_t size)
{
    return "<F><!--" + std::string(size, ' ');
}

std::string Instruction(std::size_t size)
{
    return Around("<?p " + std::string(size, '-') + "?>");
}

std::string Cdata(std::size_t size)
{
    return Around("<![CDATA[" + std::string(size, ']') + "]]>");
}

std::string BlanksInTags(std::size_t size)
{
    const std::string blanks(size / 2, ' ');
    return "<F" + blanks + "></F" + blanks + ">";
}

std::string EmptyLines(std::size_t size)
{
    return Around(std::string(size, '\n')) + "x";
}

std::string TwoRoots(std::size_t size)
{
    return Elements(size) + "<F/>";
}

constexpr Attack kAttacks[] = {
    {"levels", Levels, LoadAndWrite, result::Success, 2},
    {"levels never closed", LevelsNeverClosed, LoadOnly, result::SyntaxError},
    {"levels that close and open", LevelsThatCloseAndOpen, LoadOnly, result::Success},
    {"levels closed wrongly", LevelsClosedWrongly, LoadOnly, result::SyntaxError},
    {"elements", Elements, LoadAndWrite, result::Success, 2},
    {"elements of different names", ElementsOfDifferentNames, LoadOnly, result::Success},
    {"attributes of different names", AttributesOfDifferentNames, LoadOnly, result::Success},
    {"many attributes", AttributesOfElements, LoadAndWrite, result::Success, 2, 1, kCountedLarge},
    {"too many attributes", TooManyAttributes, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"one attribute twice among many", OneAttributeTwice, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"references", References, LoadOnly, result::Success},
    {"references in an attribute", ReferencesInAnAttribute, LoadOnly, result::Success, 1, 1, kCountedLarge},
    {"unknown reference at the end", UnknownReferenceAtTheEnd, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"comments", Comments, LoadOnly, result::Success},
    {"processing instructions", Instructions, LoadOnly, result::Success},
    {"CDATA sections", CdataSections, LoadOnly, result::Success},
    {"one element name", ElementName, LoadAndWrite, result::Success, 2, 1, kCountedLarge},
    {"one attribute name", AttributeName, LoadAndWrite, result::Success, 2, 1, kCountedLarge},
    {"one attribute value", AttributeValue, LoadAndWrite, result::Success, 2, 1, kCountedLarge},
    {"one text", Text, LoadAndWrite, result::Success, 2},
    {"one comment", Comment, LoadOnly, result::Success, 1, 1, kCountedLarge},
    {"comment never closed", CommentNeverClosed, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"one processing instruction", Instruction, LoadOnly, result::Success, 1, 1, kCountedLarge},
    {"one CDATA section", Cdata, LoadOnly, result::Success},
    {"blanks in tags", BlanksInTags, LoadAndWrite, result::Success, 2, 1, kCountedLarge},
    {"empty lines before an error", EmptyLines, LoadOnly, result::SyntaxError},
    {"two roots", TwoRoots, LoadOnly, result::SyntaxError},
};

}  // namespace

std::span<const Attack> MarkupAttacks()
{
    return kAttacks;
}

}  // namespace zupm::test
