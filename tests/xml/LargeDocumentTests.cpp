// Documents that several parsers read one after another: no result may depend on where the next one takes over.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

constexpr int kLevels = 50'000;
constexpr int kLargeText = 1 << 20;

/// The elements of a document in document order, each with its depth and name.
using Shape = std::vector<std::pair<std::size_t, std::string>>;

/// A document of pseudorandom shape, deep and wide, of about that size.
std::string RandomDocument(unsigned seed, std::size_t size, Shape& shape)
{
    std::mt19937 engine(seed);
    const auto random = [&] { return static_cast<unsigned>(engine()); };
    std::vector<std::string> open;
    std::string text;
    const auto begin = [&](bool isEmpty) {
        std::string name = "e" + std::to_string(random() % 100'000);
        shape.emplace_back(open.size(), name);
        text += "<" + name + (random() % 4 == 0 ? " a='&lt;x>'" : "") + (isEmpty ? "/>" : ">");
        if (!isEmpty) {
            open.push_back(std::move(name));
        }
    };
    const auto end = [&] {
        text += "</" + open.back() + (random() % 8 == 0 ? " \n>" : ">");
        open.pop_back();
    };
    begin(false);
    for (unsigned direction = 0; text.size() < size; direction = random() % 1000 == 0 ? random() % 3 : direction) {
        switch (const unsigned dice = random() % 8; dice) {
            case 0:
                text += "text <!-- <comment> --><?instruction?><![CDATA[</x>]]>";
                break;
            case 1:
                begin(true);
                break;
            default:
                // Down for a long while, up for a long while, or both.
                if (open.size() == 1 || direction == 0 || (direction == 1 && dice % 2 == 0)) {
                    begin(false);
                } else {
                    end();
                }
        }
    }
    while (!open.empty()) {
        end();
    }
    return text + "<!-- after the root -->\n";
}

Shape ShapeOf(const Document& document)
{
    Shape shape = {{0, Narrow(document.GetRoot().GetName())}};
    std::vector<ElementIterator> path = {document.GetRoot().Begin()};
    while (!path.empty()) {
        const Element element = *path.back();
        if (element.IsNull()) {
            path.pop_back();
            continue;
        }
        shape.emplace_back(path.size(), Narrow(element.GetName()));
        ++path.back();
        path.push_back(element.Begin());
    }
    return shape;
}

TEST(LargeDocuments, OfAnyShape_HaveTheElementsThatWereWritten)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        Shape written;
        const std::string text = RandomDocument(seed, kLargeText, written);
        const std::unique_ptr<Document> document = Parsed(text);
        EXPECT_TRUE(ShapeOf(*document) == written) << seed;
        EXPECT_TRUE(TextOf(*document) == text) << seed;
    }
}

/// That number of levels: `<d>` on a line for each, then their end tags, each on a line.
std::string Levels(int levels)
{
    std::string text;
    for (int i = 0; i < levels; ++i) {
        text += "<d>\n";
    }
    for (int i = 0; i < levels; ++i) {
        text += "</d>\n";
    }
    return text;
}

TEST(LargeDocuments, EndTagThatDoesNotMatch_IsRefusedAtItsPlace)
{
    const std::string text = Levels(kLevels);
    for (const int level : {0, 1, 4095, 4096, 4097, 30'000, kLevels - 2, kLevels - 1}) {
        std::string wrong = text;
        wrong[static_cast<std::size_t>(kLevels) * 4 + static_cast<std::size_t>(level) * 5 + 2] = 'x';
        EXPECT_EQ(Refusal(wrong), std::to_string(kLevels + level + 1) + ":3: mismatched tag");
    }
}

TEST(LargeDocuments, EndTagTooMany_IsRefused)
{
    EXPECT_EQ(Refusal(Levels(kLevels) + "</d>"),
              std::to_string(2 * kLevels + 1) + ":2: not well-formed (invalid token)");
    EXPECT_EQ(Refusal(Levels(kLevels) + "<d/>"), std::to_string(2 * kLevels + 1) + ":1: junk after document element");
}

TEST(LargeDocuments, EndTagMissing_IsRefusedAtTheEnd)
{
    const std::string text = Levels(kLevels);
    EXPECT_EQ(Refusal(text.substr(0, text.size() - 5)), std::to_string(2 * kLevels) + ":1: no element found");
}

TEST(LargeDocuments, ReferenceThatADoctypeMightDeclare_IsRefusedEverywhere)
{
    const std::string before = "<!DOCTYPE a SYSTEM 'x'><a>\n" + std::string(kLargeText, ' ') + "<b/>\n<c/>\n";
    EXPECT_EQ(Refusal(before + "&e;</a>"), "4:1: undefined entity");
    EXPECT_EQ(Refusal(before + "<b a='&e;'/></a>"), "4:1: undefined entity");
}

TEST(LargeDocuments, DeclarationsThatOnlyABeginningMayHave_AreRefusedLater)
{
    const std::string before = "<a>\n" + std::string(kLargeText, ' ') + "<b/>";
    EXPECT_EQ(Refusal(before + "\n<?xml version='1.0'?></a>"), "3:1: XML or text declaration not at start of entity");
    EXPECT_EQ(Refusal(before + "\n<!DOCTYPE a></a>"), "3:3: not well-formed (invalid token)");
    EXPECT_EQ(Refusal(before + "\n\xEF\xBB\xBF</a>"), "accepted");
}

std::string ManyAttributes(int count)
{
    std::string text = "<a>\n<b";
    for (int i = 0; i < count; ++i) {
        text += " a" + std::to_string(i) + "='\"'";
    }
    return text + "/></a>";
}

TEST(LargeDocuments, MoreThanHalfAMillionAttributes_AreTooMany)
{
    EXPECT_EQ(Refusal(ManyAttributes(500'000)), "accepted");
    EXPECT_EQ(Refusal(ManyAttributes(500'001)), "2:1: too many attributes");
}

TEST(LargeDocuments, MoreThanTenThousandAttributeDeclarations_AreTooMany)
{
    const auto declared = [](int count) {
        std::string text = "<!DOCTYPE a [";
        for (int i = 0; i < count; ++i) {
            text += "<!ATTLIST e" + std::to_string(i % 7) + " a" + std::to_string(i) + " CDATA 'x'>";
        }
        return text + "]><a/>";
    };
    EXPECT_EQ(Refusal(declared(10'000)), "accepted");
    EXPECT_NE(Refusal(declared(10'001)).find("too many attribute declarations"), std::string::npos);
}

TEST(LargeDocuments, LevelsThatTheRestCannotClose_AreRefusedBeforeTheEnd)
{
    std::string text;
    for (int i = 0; i < 300'000; ++i) {
        text += "<d>";
    }
    EXPECT_NE(Refusal(text).find("never closed"), std::string::npos);
}

}  // namespace
}  // namespace AdvXMLParser
