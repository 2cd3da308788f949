#include <gtest/gtest.h>

#include <functional>

#include "tests/support/SmallStackThread.h"
#include "tests/xml/XmlTestSupport.h"

namespace AdvXMLParser {
namespace {

constexpr std::size_t kLevels = ZUPM_DEEP_LEVELS;

std::string DeepText()
{
    std::string text;
    for (std::size_t i = 0; i < kLevels; ++i) {
        text += "<d>";
    }
    for (std::size_t i = 0; i < kLevels; ++i) {
        text += "</d>";
    }
    return text;
}

TEST(DeepDocument, LoadsClonesWritesAndIsFreedOnASmallStack)
{
    zupm::test::RunOnSmallStack([] {
        const std::string text = DeepText();
        {
            const std::unique_ptr<Document> document = Parsed(text);
            Document copy(u"copy");
            Element root = copy.GetRoot();
            Element clone = root.Add(document->GetRoot().Clone());
            EXPECT_EQ(TextOf(*document), text);
            EXPECT_EQ(TextOf(copy), "<copy>" + text + "</copy>");
            clone.Delete();
            EXPECT_EQ(TextOf(copy), "<copy></copy>");
            (void)root.Add(document->GetRoot().Clone());
            root.SetText(u"x");
            EXPECT_EQ(TextOf(copy), "<copy>x</copy>");
        }
    });
}

}  // namespace
}  // namespace AdvXMLParser
