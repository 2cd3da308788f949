// What is read as a section or setting, and what a value is.
#include "common/Macros.h"
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

using LogLines = std::vector<LogLine>;

TEST_P(SectionTest, GetSectionSetting_GivesTheTextOfTheSetting)
{
    Load("<Section name='General'><Setting name='Mode'>full</Setting></Section>");
    EXPECT_EQ(Get(u"General", u"Mode"), (Read{0, u"full"}));
}

TEST_P(SectionTest, GetSectionSetting_OfAMissingSectionOrSettingLeavesTheSlotAlone)
{
    Load("<Section name='General'><Setting name='Mode'>full</Setting></Section><Section name='Empty'/>");
    EXPECT_EQ(Get(u"Missing", u"Mode"), Failed(result::SectionNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(Get(u"General", u"Missing"), Failed(result::SettingNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SettingNotFound));
    EXPECT_EQ(Get(u"Empty", u"Mode"), Failed(result::SettingNotFound));
}

TEST_P(SectionTest, GetSectionSetting_ReplacesTheTextThatTheSlotHolds)
{
    Load("<Section name='A'><Setting name='x'>1</Setting><Setting name='y'>2</Setting></Section>");
    OutText value;
    ASSERT_EQ(m_object->GetSectionSetting(u"A", u"x", value), 0);
    ASSERT_EQ(m_object->GetSectionSetting(u"A", u"y", value), 0);
    EXPECT_EQ(value.Text(), u"2");
}

TEST_P(SectionTest, TwoSectionsOfOneName_AreReadAsOneAndTheFirstOfADoubledSettingWins)
{
    static_cast<void>(m_log.Take());
    Load(
        "<Section name='A'><Setting name='x'>first</Setting><Setting name='y'>1</Setting></Section>"
        "<Section name='B'/>"
        "<Section name='A'><Setting name='x'>second</Setting><Setting name='z'>2</Setting></Section>");
    EXPECT_EQ(m_log.Take(),
              (LogLines{{8, "CXMLDataObject::Initialize() -- Section A exists already in the section map"},
                        {8,
                         "CXMLDataObject::Initialize() -- Setting x exists already in the setting map for the "
                         "section A"}}));
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"first"}));
    EXPECT_EQ(Get(u"A", u"y"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"A", u"z"), (Read{0, u"2"}));
}

TEST_P(SectionTest, ASettingTwiceInOneSection_IsTheFirstOfThem)
{
    static_cast<void>(m_log.Take());
    Load("<Section name='A'><Setting name='x'>1</Setting><Setting name='x'>2</Setting></Section>");
    EXPECT_EQ(m_log.Take(),
              (LogLines{{8,
                         "CXMLDataObject::Initialize() -- Setting x exists already in the setting map for the "
                         "section A"}}));
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"1"}));
}

TEST_P(SectionTest, AnyElementWithANameIsASectionOrSetting_WhateverItIsCalled)
{
    Load("<Group name='A'><Value name='x'>1</Value><Section name='y'>2</Section></Group><Setting name='B'/>");
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"A", u"y"), (Read{0, u"2"}));
    EXPECT_EQ(Get(u"B", u"x"), Failed(result::SettingNotFound));
}

TEST_P(SectionTest, WhatIsNoElementOrHasNoNameIsSkipped)
{
    static_cast<void>(m_log.Take());
    Load(
        "text<!-- <Section name='C'/> --><?pi <Section name='P'/>?><Section><Setting name='x'>0</Setting></Section>"
        "<Section Name='A'/><Section name='A'>text<!-- c --><Setting>0</Setting><Setting NAME='x'>0</Setting>"
        "<![CDATA[<Setting name='x'>0</Setting>]]><Setting name='x'>1</Setting></Section>");
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"", u"x"), Failed(result::SectionNotFound));
    EXPECT_EQ(Get(u"C", u"x"), Failed(result::SectionNotFound));
    EXPECT_EQ(Get(u"A", u""), Failed(result::SettingNotFound));
    EXPECT_EQ(m_log.Take(), LogLines{});
}

TEST_P(SectionTest, NamesThatDifferInCaseOrBlanksAreDifferentNames)
{
    Load(
        "<Section name='a'><Setting name='x'>1</Setting><Setting name='X'>2</Setting><Setting name=' x'>3</Setting>"
        "</Section><Section name='A'><Setting name='x'>4</Setting></Section>"
        "<Section name='a '><Setting name='x'>5</Setting></Section>");
    EXPECT_EQ(Get(u"a", u"x"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"a", u"X"), (Read{0, u"2"}));
    EXPECT_EQ(Get(u"a", u" x"), (Read{0, u"3"}));
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"4"}));
    EXPECT_EQ(Get(u"a ", u"x"), (Read{0, u"5"}));
    EXPECT_EQ(Get(u"A", u"X"), Failed(result::SettingNotFound));
}

TEST_P(SectionTest, AValueIsTheCharacterDataDirectlyInTheElement)
{
    struct Row {
        const char* label;
        const char* inner;
        std::u16string_view value;
    };
    constexpr Row kRows[] = {
        {"nothing", "", u""},
        {"blanks at the ends", "  a b\t", u"  a b\t"},
        {"entities and references", "&lt;&gt;&amp;&quot;&apos;&#65;&#x1F600;", u"<>&\"'A\U0001F600"},
        {"CDATA", "a<![CDATA[<b>&amp;]]>c", u"a<b>&amp;c"},
        {"comments and instructions left out", "a<!--x-->b<?p q?>c", u"abc"},
        {"child elements left out", "a<b>x</b>c", u"ac"},
        {"line ends become LF", "a\r\nb\rc\nd", u"a\nb\nc\nd"},
        {"a written CR stays", "a&#13;&#10;b", u"a\r\nb"},
        {"letters of other scripts", "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80", u"\u00E4\u4E2D\U0001F600"},
    };
    for (const Row& row : kRows) {
        Load(std::string("<Section name='A'><Setting name='x'>") + row.inner + "</Setting></Section>");
        EXPECT_EQ(Get(u"A", u"x"), (Read{0, std::u16string(row.value)})) << row.label;
    }
}

TEST_P(SectionTest, MacrosAreExpandedOnReadingAndStayAsTheyAreInTheXml)
{
    RegisterMacro(u"Home", u"/home/<User>");
    RegisterMacro(u"User", u"me");
    EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", u"<Home>/<User>, <home>, <Unknown>, <User"), 0);
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"/home/<User>/me, <home>, <Unknown>, <User"}));
    const std::string raw = Inner("<Setting name=\"x\">", "</Setting>");
    UnregisterAllMacros();
    EXPECT_EQ(raw.substr(0, 11), "&lt;Home&gt") << raw;
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"<Home>/<User>, <home>, <Unknown>, <User"}));
}

TEST_P(SectionTest, GetSetting_ReadsTheSectionThatWasSet)
{
    Load(
        "<Section name='A'><Setting name='x'>1</Setting></Section>"
        "<Section name='B'><Setting name='x'>2</Setting></Section>");
    ASSERT_EQ(m_object->PutSection(u"B"), 0);
    EXPECT_EQ(GetCurrent(u"x"), (Read{0, u"2"}));
    ASSERT_EQ(m_object->PutSection(u"A"), 0);
    EXPECT_EQ(GetCurrent(u"x"), (Read{0, u"1"}));
    ASSERT_EQ(m_object->PutSection(u"Missing"), 0);
    EXPECT_EQ(GetCurrent(u"x"), Failed(result::SectionNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SectionNotFound));
}

TEST_P(SectionTest, GetSetting_BeforeAnySectionWasSetReadsTheSectionNamedInvalid)
{
    EXPECT_EQ(GetCurrent(u"x"), Failed(result::SectionNotFound));
    Load("<Section name='invalid'><Setting name='x'>1</Setting></Section>");
    EXPECT_EQ(GetCurrent(u"x"), (Read{0, u"1"}));
}

}  // namespace zupm::test
