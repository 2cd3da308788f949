#include "xml/scan/Scanner.h"

#include <gtest/gtest.h>

#include "tests/xml/scan/GateAgreement.h"
#include "tests/xml/scan/Mutations.h"
#include "xml/ExpatGate.h"

namespace AdvXMLParser {
namespace {

/// Writes tags down: "<a><b/></a>" becomes "0-3 3-7/ 7-11~".
class Notes final : public TagSink {
public:
    void Take(std::span<const Tag> tags) override
    {
        for (const Tag& tag : tags) {
            const char* const kind = tag.kind == TagKind::Start ? "" : tag.kind == TagKind::Empty ? "/" : "~";
            text += (text.empty() ? "" : " ") + std::to_string(tag.begin) + "-" + std::to_string(tag.end) + kind;
        }
        count += tags.size();
    }
    std::string text;
    std::size_t count = 0;
};

bool IsAccepted(const std::string& text)
{
    Notes notes;
    return ScanDocument(text, notes).has_value();
}

/// `count` elements inside one another.
std::string Levels(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "<a>";
    }
    for (std::size_t i = 0; i < count; ++i) {
        text += "</a>";
    }
    return text;
}

std::string Attributes(std::size_t count, const std::string& last = {})
{
    std::string text = "<a";
    for (std::size_t i = 0; i < count; ++i) {
        text.append(" n").append(std::to_string(i)).append("=''");
    }
    return text + last + "/>";
}

TEST(Scanner, ReportsEveryTagInOrder)
{
    Notes notes;
    EXPECT_TRUE(ScanDocument("<?xml version='1.0'?> <a>t<b c='>'/><!-- <d> --><e ></e ></a> ", notes));
    EXPECT_EQ(notes.text, "22-25 26-36/ 48-52 52-57~ 57-61~");
}

TEST(Scanner, ReportsTagsDownToALevel)
{
    const std::string text = "<a><b><c/></b><d/></a>";
    const std::pair<std::uint32_t, std::string> rows[] = {
        {0, ""}, {1, "0-3 18-22~"}, {2, "0-3 3-6 10-14~ 14-18/ 18-22~"}, {3, "0-3 3-6 6-10/ 10-14~ 14-18/ 18-22~"}};
    for (const auto& [levels, tags] : rows) {
        Notes notes;
        EXPECT_TRUE(ScanDocument(text, notes, {.reportedLevels = levels}));
        EXPECT_EQ(notes.text, tags) << levels;
    }
}

TEST(Scanner, ChecksWhatItDoesNotReport)
{
    Notes notes;
    EXPECT_FALSE(ScanDocument("<a><b><c></b></a>", notes, {.reportedLevels = 1}));
    EXPECT_FALSE(ScanDocument("<a><b>&x;</b></a>", notes, {.reportedLevels = 1}));
}

TEST(Scanner, GoesOnAfterTheStartTagOfTheRoot)
{
    const std::string text = "<!DOCTYPE a [<!ATTLIST a b CDATA 'x'>]><a c='1'><b/></a>\n<!-- c -->";
    const auto begin = static_cast<std::uint32_t>(text.find("<a "));
    const auto end = static_cast<std::uint32_t>(text.find("<b/>"));
    Notes notes;
    EXPECT_TRUE(ScanAfterRootTag(text, {begin, end}, notes));
    EXPECT_EQ(notes.text, "48-52/ 52-56~");
}

TEST(Scanner, AfterTheStartTagOfTheRootItIsAsStrict)
{
    const std::string rows[] = {"<a></b>", "<a></a>x",    "<a></a><b/>", "<a>&e;</a>",        "<a><b></a>",
                                "<a>",     "<a></a>\xC3", "<a>\x01</a>", "<a></a><!-- -- -->"};
    for (const std::string& text : rows) {
        Notes notes;
        EXPECT_FALSE(ScanAfterRootTag(text, {0, 3}, notes)) << text;
    }
}

TEST(Scanner, ReturnsTheDeclaredEncoding)
{
    const std::pair<std::string, std::string> rows[] = {
        {"<a/>", ""},
        {"<?xml version='1.0'?><a/>", ""},
        {"<?xml version='1.0' encoding='UTF-8'?><a/>", "UTF-8"},
        {"<?xml version=\"1.0\"  encoding = \"iso-8859-1\" standalone='no' ?><a/>", "iso-8859-1"}};
    for (const auto& [text, encoding] : rows) {
        Notes notes;
        const std::optional<ScannedDocument> document = ScanDocument(text, notes);
        ASSERT_TRUE(document) << text;
        EXPECT_EQ(document->declaredEncoding, encoding) << text;
    }
}

TEST(Scanner, ElementsThatBeginAlikeAreCheckedAlike)
{
    for (const char* second : {"<b c='1'/>", "<b c='1' d='2'/>", "<b c='1'></b>", "<b c='&amp;'/>", "<b c='1' />",
                               "<b c=\"1\"/>", "<bb c='1'/>"}) {
        EXPECT_TRUE(IsAccepted("<a><b c='0'/>" + std::string(second) + "</a>")) << second;
    }
    for (const char* second :
         {"<b c='1' c='2'/>", "<b c='<'/>", "<b c='&e;'/>", "<b c='1'd='2'/>", "<b c='1'/ >", "<b c='1", "<b c='1'"}) {
        EXPECT_FALSE(IsAccepted("<a><b c='0'/>" + std::string(second) + "</a>")) << second;
    }
    EXPECT_TRUE(IsAccepted("<a><b></b><b></b><b/></a>"));
    EXPECT_FALSE(IsAccepted("<a><b/><b></a>"));
    EXPECT_FALSE(IsAccepted("<a><b></b><b/></b></a>"));
}

TEST(Scanner, ComparesManyAttributes)
{
    for (const std::size_t count : {11u, 12u, 13u, 14u, 100u, 5000u}) {
        EXPECT_TRUE(IsAccepted(Attributes(count))) << count;
        EXPECT_FALSE(IsAccepted(Attributes(count, " n0=''"))) << count;
        EXPECT_FALSE(IsAccepted(Attributes(count, " n" + std::to_string(count - 1) + "=''"))) << count;
    }
}

/// Names of many attributes are sorted. The tag that follows begins like theirs.
TEST(Scanner, KnowsTheFirstAttributeAmongMany)
{
    const std::string many = "<b z='' a='' b='' c='' d='' e='' f='' g='' h='' i='' j='' k='' l='' m=''/>";
    const std::string lastIsLeast = "<b z='' b='' c='' d='' e='' f='' g='' h='' i='' j='' k='' l='' m='' a=''/>";
    for (const std::string& first : {many, lastIsLeast}) {
        for (const char* second : {"<b z='' y=''/>", "<b z=' a' a=''/>", "<b z='1' z1='2' y='3'/>", "<b z='1'/>"}) {
            const Agreement agreement = CompareWithGate("<r>" + first + second + "</r>");
            EXPECT_TRUE(agreement.isAcceptedByScanner) << first << second;
            EXPECT_EQ(agreement.difference, "") << first << second;
        }
        for (const char* second : {"<b z='' z=''/>", "<b z='1' z='2'/>", "<b z='1' y='' z='2'/>"}) {
            EXPECT_FALSE(IsAccepted("<r>" + first + second + "</r>")) << first << second;
        }
    }
}

TEST(Scanner, TakesAsManyAttributesAsTheGateDoes)
{
    constexpr std::size_t kMost = 500'000;
    EXPECT_TRUE(IsAccepted(Attributes(kMost)));
    EXPECT_FALSE(IsAccepted(Attributes(kMost + 1)));
}

TEST(Scanner, PassesOnMoreLevelsThanItHasMemoryFor)
{
    constexpr std::size_t kMost = 100'000;
    EXPECT_TRUE(IsAccepted(Levels(kMost)));
    EXPECT_FALSE(IsAccepted(Levels(kMost + 1)));
    const std::string text = Levels(kMost + 1);
    EXPECT_NO_THROW((void)ExpatGate(text, std::nullopt).ReadRest());
}

TEST(Scanner, ReportsAGreatManyTags)
{
    constexpr std::size_t kElements = 10'000;
    std::string text = "<a>";
    for (std::size_t i = 0; i < kElements; ++i) {
        text += "<b c='1'>t</b>";
    }
    Notes notes;
    EXPECT_TRUE(ScanDocument(text + "</a>", notes));
    EXPECT_EQ(notes.count, 2 * kElements + 2);
}

TEST(Scanner, AgreesWithTheGateOnMutations)
{
    const Mutations mutations(BuiltInSeeds());
    constexpr std::uint64_t kTexts = 6000;
    std::uint64_t accepted = 0;
    for (std::uint64_t number = 0; number < kTexts; ++number) {
        const std::string text = mutations.Text(number);
        const Agreement agreement = CompareWithGate(text);
        EXPECT_EQ(agreement.difference, "") << text;
        EXPECT_FALSE(agreement.isPassedOnNeedlessly) << text;
        accepted += agreement.isAcceptedByScanner ? 1 : 0;
    }
    EXPECT_GT(accepted, kTexts / 10);
    EXPECT_LT(accepted, kTexts - kTexts / 10);
}

/// A sink that fails.
class Refusal final : public TagSink {
public:
    void Take(std::span<const Tag>) override { throw std::bad_alloc(); }
};

TEST(Scanner, PassesOnWhatTheSinkThrows)
{
    Refusal refusal;
    EXPECT_THROW(static_cast<void>(ScanDocument("<a/>", refusal)), std::bad_alloc);
}

}  // namespace
}  // namespace AdvXMLParser
