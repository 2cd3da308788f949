// The section cursor.
#include <thread>
#include <vector>

#include "common/Macros.h"
#include "tests/settings/ContainerTest.h"

namespace zupm::test {
namespace {

constexpr std::string_view kOneSetting = R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)";

class SectionCursor : public ContainerTest {
protected:
    ~SectionCursor() override { UnregisterAllMacros(); }
};

TEST_F(SectionCursor, RefusesUntilItIsInitialisedAndAfterItWasDeinitialised)
{
    Load(kOneSetting);
    MakeCursor();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(CursorValue(u"S", u"A"), "code -11");
        EXPECT_EQ(Cursor().SetSettingValue(u"S", u"A", u"2"), result::CursorNotInitialised);
        EXPECT_EQ(Cursor().RemoveSetting(u"S", u"A"), result::CursorNotInitialised);
        EXPECT_EQ(Text(), kOneSetting);

        ASSERT_EQ(Cursor().Initialize(), result::Success);
        EXPECT_EQ(CursorValue(u"S", u"A"), "1");
        EXPECT_EQ(Cursor().Deinitialize(), result::Success);
    }
    EXPECT_EQ(CursorValue(u"S", u"A"), "code -11");
}

TEST_F(SectionCursor, InitialisingTwiceKeepsTheFirstStore)
{
    Load(R"(<P><Section name="S"/><Section name="S"/></P>)");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(m_log.Take().size(), 1U);
    AdvXMLParser::Element behindItsBack = (*Root().Begin()).CreateElement(u"Setting");
    SetAttribute(behindItsBack, u"name", u"A");

    EXPECT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_TRUE(m_log.Take().empty());
    EXPECT_EQ(CursorValue(u"S", u"A"), "code -1201");
}

TEST_F(SectionCursor, AReinitialisedCursorSeesTheDocumentAnew)
{
    Load(kOneSetting);
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    AdvXMLParser::Element added = (*Root().Begin()).CreateElement(u"Setting");
    SetAttribute(added, u"name", u"B");
    EXPECT_EQ(CursorValue(u"S", u"B"), "code -1201");
    Cursor().Deinitialize();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(CursorValue(u"S", u"B"), "");
}

TEST_F(SectionCursor, HandsOutExpandedValuesAndKeepsTheRawText)
{
    RegisterMacro(u"Drive", u"C:");
    Load(R"(<P><Section name="S"><Setting name="A">&lt;Drive>\&lt;Other></Setting></Section></P>)");
    const std::string before = Text();
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(CursorValue(u"S", u"A"), R"(C:\<Other>)");
    EXPECT_EQ(Text(), before);
}

TEST_F(SectionCursor, StoresValuesRaw)
{
    RegisterMacro(u"Drive", u"C:");
    Load("<P/>");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(Cursor().SetSettingValue(u"S", u"A", u"<Drive>"), result::Success);
    EXPECT_EQ((*(*Root().Begin()).Begin()).GetText(), u"<Drive>");
    EXPECT_EQ(CursorValue(u"S", u"A"), "C:");
}

TEST_F(SectionCursor, PassesTheStoresCodesOn)
{
    Load(kOneSetting);
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(CursorValue(u"T", u"A"), "code -1200");
    EXPECT_EQ(CursorValue(u"S", u"B"), "code -1201");
    EXPECT_EQ(Cursor().RemoveSetting(u"T", u"A"), result::SectionNotFound);
    EXPECT_EQ(Cursor().RemoveSetting(u"S", u"B"), result::SettingNotFound);
    EXPECT_EQ(Cursor().SetSettingValue(u"S", u"A", u"\x01"), result::Unexpected);
    EXPECT_EQ(Text(), kOneSetting);
    EXPECT_EQ(Cursor().RemoveSetting(u"S", u"A"), result::Success);
    EXPECT_EQ(CursorValue(u"S", u"A"), "code -1201");
}

TEST_F(SectionCursor, WritesOfSeveralThreadsAllArrive)
{
    constexpr int kThreads = 4;
    constexpr int kSettings = 20;
    Load("<P/>");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([this, thread] {
            const std::u16string section(1, static_cast<char16_t>(u'a' + thread));
            for (int setting = 0; setting < kSettings; ++setting) {
                const std::u16string name(1, static_cast<char16_t>(u'A' + setting));
                static_cast<void>(Cursor().SetSettingValue(section, name, section + name));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    int found = 0;
    for (char section = 'a'; section < 'a' + kThreads; ++section) {
        for (char setting = 'A'; setting < 'A' + kSettings; ++setting) {
            const std::string value = CursorValue(std::u16string(1, static_cast<char16_t>(section)),
                                                  std::u16string(1, static_cast<char16_t>(setting)));
            found += value == std::string{section, setting} ? 1 : 0;
        }
    }
    EXPECT_EQ(found, kThreads * kSettings);
}

}  // namespace
}  // namespace zupm::test
