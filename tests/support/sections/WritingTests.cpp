// What writing and removing change, and that they change nothing else.
#include <functional>

#include "tests/support/Difference.h"
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

namespace {

constexpr char kInner[] =
    "\n"
    "  <!-- kept -->\n"
    "  <Section name=\"A\">\n"
    "    <Setting name=\"x\">1</Setting>\n"
    "    <Setting name='y'  old=\"\">two</Setting>\n"
    "  </Section>\n"
    "  <Section name=\"B\">\n"
    "    <Setting name=\"x\">3</Setting>\n"
    "  </Section>\n"
    "  <Section name=\"A\">\n"
    "    <Setting name=\"z\">4</Setting>\n"
    "    <Setting name=\"x\">5</Setting>\n"
    "  </Section>\n";

struct EditRow {
    const char* label;
    HRESULT (*edit)(SectionMembers& object);
    HRESULT code;
    const char* difference;
};

constexpr EditRow kEdits[] = {
    {"a value", [](SectionMembers& o) { return o.PutSectionSetting(u"A", u"y", u"<new>"); }, 0,
     "-     <Setting name='y'  old=\"\">two</Setting>\n+     <Setting name='y'  old=\"\">&lt;new&gt;</Setting>\n"},
    {"the same value", [](SectionMembers& o) { return o.PutSectionSetting(u"A", u"x", u"1"); }, 0, ""},
    {"the first of a doubled setting", [](SectionMembers& o) { return o.PutSectionSetting(u"A", u"x", u"9"); }, 0,
     "-     <Setting name=\"x\">1</Setting>\n+     <Setting name=\"x\">9</Setting>\n"},
    {"a setting that only the second section of the name has",
     [](SectionMembers& o) { return o.PutSectionSetting(u"A", u"z", u"9"); }, 0,
     "-     <Setting name=\"z\">4</Setting>\n+     <Setting name=\"z\">9</Setting>\n"},
    {"a new setting goes to the end of the first section of the name",
     [](SectionMembers& o) { return o.PutSectionSetting(u"A", u"n", u"9"); }, 0,
     "+     <Setting name=\"n\">9</Setting>\n"},
    {"removing the only setting of a section keeps the section",
     [](SectionMembers& o) { return o.RemoveSetting(u"B", u"x"); }, 0, "-     <Setting name=\"x\">3</Setting>\n"},
    {"removing the first of a doubled setting", [](SectionMembers& o) { return o.RemoveSetting(u"A", u"x"); }, 0,
     "-     <Setting name=\"x\">1</Setting>\n"},
    {"removing a missing setting", [](SectionMembers& o) { return o.RemoveSetting(u"A", u"n"); },
     result::SettingNotFound, ""},
    {"removing a setting of a missing section", [](SectionMembers& o) { return o.RemoveSetting(u"N", u"x"); },
     result::SectionNotFound, ""},
    {"removing a section whose name differs in case", [](SectionMembers& o) { return o.RemoveSection(u"a"); },
     result::SectionNotFound, ""},
    {"removing a section", [](SectionMembers& o) { return o.RemoveSection(u"B"); }, 0,
     "-   <Section name=\"B\">\n-     <Setting name=\"x\">3</Setting>\n-   </Section>\n"},
    {"removing the first of two sections of one name", [](SectionMembers& o) { return o.RemoveSection(u"A"); }, 0,
     "-   <Section name=\"A\">\n-     <Setting name=\"x\">1</Setting>\n-     <Setting name='y'  "
     "old=\"\">two</Setting>\n"
     "-   </Section>\n"},
};

}  // namespace

TEST_P(SectionTest, AnEditChangesItsOwnLinesAndNoOthers)
{
    for (const EditRow& row : kEdits) {
        Load(kInner);
        const std::string before = Data();
        EXPECT_EQ(row.edit(*m_object), row.code) << row.label;
        EXPECT_EQ(m_object->Failure(), row.code == 0 ? u"" : result::SentenceFor(row.code)) << row.label;
        EXPECT_EQ(Difference(before, Data()), row.difference) << row.label;
    }
}

TEST_P(SectionTest, PutSectionSetting_CreatesAMissingSectionAtTheEnd)
{
    Load(kInner);
    const std::string before = Data();
    ASSERT_EQ(m_object->PutSectionSetting(u"N", u"n", u"9"), 0);
    EXPECT_EQ(Get(u"N", u"n"), (Read{0, u"9"}));
    const std::string after = Data();
    EXPECT_EQ(Difference(before, after),
              "+   <Section name=\"N\">\n+     <Setting name=\"n\">9</Setting>\n"
              "+   </Section>\n");
    EXPECT_EQ(after.find("<Section", after.find("name=\"N\"")), std::string::npos) << after;
}

TEST_P(SectionTest, PutSectionSetting_ReplacesChildElementsAndCommentsByTheText)
{
    Load("<Section name='A'><Setting name='x'>a<b name='c'>d</b><!--e--><![CDATA[f]]></Setting></Section>");
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u"new"), 0);
    EXPECT_EQ(Inner("<Section name='A'>", "</Section>"), "<Setting name='x'>new</Setting>");
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"new"}));
}

TEST_P(SectionTest, PutSectionSetting_OfAnEmptyValueReadsBackEmpty)
{
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u"1"), 0);
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u""), 0);
    OutText value;
    EXPECT_EQ(m_object->GetSectionSetting(u"A", u"x", value), 0);
    EXPECT_FALSE(value.IsNull());
    EXPECT_EQ(value.Text(), u"");
}

TEST_P(SectionTest, RemovedFirstOfADoubledSetting_UncoversTheSecond)
{
    Load(kInner);
    ASSERT_EQ(m_object->RemoveSetting(u"A", u"x"), 0);
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"5"}));
    ASSERT_EQ(m_object->RemoveSetting(u"A", u"x"), 0);
    EXPECT_EQ(Get(u"A", u"x"), Failed(result::SettingNotFound));
}

TEST_P(SectionTest, RemoveSetting_OfTheLastOneLeavesTheSectionEmpty)
{
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u"1"), 0);
    ASSERT_EQ(m_object->RemoveSetting(u"A", u"x"), 0);
    EXPECT_EQ(Get(u"A", u"x"), Failed(result::SettingNotFound));
    EXPECT_NE(Data().find("<Section name=\"A\""), std::string::npos);
    EXPECT_EQ(m_object->RemoveSection(u"A"), 0);
    EXPECT_EQ(Get(u"A", u"x"), Failed(result::SectionNotFound));
}

TEST_P(SectionTest, RemoveSection_DeletesOnlyTheFirstOfTwoWithTheSameName)
{
    Load(kInner);
    ASSERT_EQ(m_object->RemoveSection(u"A"), 0);
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"5"}));
    EXPECT_EQ(Get(u"A", u"y"), Failed(result::SettingNotFound));
    ASSERT_EQ(m_object->RemoveSection(u"A"), 0);
    EXPECT_EQ(Get(u"A", u"z"), Failed(result::SectionNotFound));
}

TEST_P(SectionTest, RemoveSection_OfAMissingNameFailsAndLeavesTheObjectUsable)
{
    Load(kInner);
    EXPECT_EQ(m_object->RemoveSection(u"Missing"), result::SectionNotFound);
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"1"}));
    EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", u"9"), 0);
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"9"}));
}

TEST_P(SectionTest, RemoveSection_TakesAnElementOfAnyOtherName)
{
    Load("<Section/><Group name='A'><Setting name='x'>1</Setting></Group><Section name='A'/>");
    ASSERT_EQ(m_object->RemoveSection(u"A"), 0);
    EXPECT_EQ(Get(u"A", u"x"), Failed(result::SettingNotFound));
}

TEST_P(SectionTest, PutSetting_WritesTheSectionThatWasSetAndCreatesIt)
{
    ASSERT_EQ(m_object->PutSetting(u"x", u"0"), 0);
    ASSERT_EQ(m_object->PutSection(u"A"), 0);
    ASSERT_EQ(m_object->PutSetting(u"x", u"1"), 0);
    EXPECT_EQ(GetCurrent(u"x"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"1"}));
    EXPECT_EQ(Get(u"invalid", u"x"), (Read{0, u"0"}));
    EXPECT_EQ(Inner("<Section name=\"A\">", "</Section>"), "<Setting name=\"x\">1</Setting>");
}

TEST_P(SectionTest, ManySettingsAreAllFoundAgain)
{
    constexpr int kCount = 60;
    const auto name = [](int i) { return Utf16(std::to_string(i)); };
    for (int i = 0; i < kCount; ++i) {
        ASSERT_EQ(m_object->PutSectionSetting(name(i % 7), name(i), name(i * i)), 0);
    }
    PassThroughFile();
    for (int i = 0; i < kCount; ++i) {
        EXPECT_EQ(Get(name(i % 7), name(i)), (Read{0, name(i * i)}));
    }
}

}  // namespace zupm::test
