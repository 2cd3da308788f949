// What a product or task lists: its sections and settings, and values as they are stored.
#include "common/Macros.h"
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

TEST_P(SectionTest, SectionNames_AreInTheOrderOfTheText)
{
    Load(
        "<Section name='Zeta'><Setting name='x'>1</Setting></Section><Section name='alpha'/>"
        "<!-- <Section name='not one'/> --><Section name='Alpha'/>");
    EXPECT_EQ(SectionNames(), AllOf({u"Zeta", u"alpha", u"Alpha"}));
    EXPECT_EQ(m_object->Failure(), u"");
}

TEST_P(SectionTest, SectionNames_OfANewObjectAreNone)
{
    EXPECT_EQ(SectionNames(), AllOf({}));
    Load("");
    EXPECT_EQ(SectionNames(), AllOf({}));
}

TEST_P(SectionTest, SettingNames_AreInTheOrderOfTheText)
{
    Load(
        "<Section name='A'><Setting name='z'>1</Setting><Setting name='y'/><Setting name='Y'>2</Setting></Section>"
        "<Section name='Empty'/>");
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"z", u"y", u"Y"}));
    EXPECT_EQ(SettingNames(u"Empty"), AllOf({}));
}

TEST_P(SectionTest, SettingNames_OfAMissingSectionLeaveTheSlotAlone)
{
    Load("<Section name='A'/>");
    EXPECT_EQ(SettingNames(u"B"), NoneFor(result::SectionNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(SettingNames(u"a"), NoneFor(result::SectionNotFound)) << "case counts";
    EXPECT_EQ(SettingNames(Bstr()), NoneFor(result::SectionNotFound)) << "null is the empty name";
}

TEST_P(SectionTest, Names_ThatOccurTwiceAreListedOnceInTheFirstPlace)
{
    Load(
        "<Section name='A'><Setting name='x'>1</Setting><Setting name='y'>1</Setting><Setting name='x'>2</Setting>"
        "</Section><Section name='B'><Setting name='b'/></Section>"
        "<Section name='A'><Setting name='y'>2</Setting><Setting name='z'>2</Setting></Section>");
    EXPECT_EQ(SectionNames(), AllOf({u"A", u"B"}));
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x", u"y", u"z"})) << "sections of one name are one";
}

TEST_P(SectionTest, Names_ThatAreEmptyAreListedAndMissingOnesAreNot)
{
    Load(
        "<Section name='A'><Setting name='x'/><Setting name=''>e</Setting><Setting>no name</Setting></Section>"
        "<Section><Setting name='lost'/></Section><Section name=''><Setting name='n'/></Section>");
    EXPECT_EQ(SectionNames(), AllOf({u"A", u""}));
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x", u""}));
    EXPECT_EQ(SettingNames(Bstr()), AllOf({u"n"})) << "null is the empty name";
    EXPECT_EQ(GetStored(u"A", Bstr()), (Read{0, u"e"}));
}

TEST_P(SectionTest, Names_AreThoseOfElementsOfAnyName)
{
    Load("<Group name='A'><Value name='x'>1</Value></Group>text<Other/>");
    EXPECT_EQ(SectionNames(), AllOf({u"A"}));
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x"}));
}

TEST_P(SectionTest, Names_HaveTheirReferencesResolvedAndTheirWhiteSpaceNormalised)
{
    Load("<Section name='a&amp;b&#x1F600;'><Setting name='t\tt'/><Setting name='l&#10;l'/></Section>");
    EXPECT_EQ(SectionNames(), AllOf({u"a&b\U0001F600"}));
    EXPECT_EQ(SettingNames(u"a&b\U0001F600"), AllOf({u"t t", u"l\nl"}));
}

TEST_P(SectionTest, Names_FollowEveryChange)
{
    Load("<Section name='A'><Setting name='x'/><Setting name='y'/></Section><Section name='B'/>");
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"z", u"1"), 0);
    ASSERT_EQ(m_object->PutSectionSetting(u"New", u"n", u"1"), 0);
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"y", u"2"), 0);
    EXPECT_EQ(SectionNames(), AllOf({u"A", u"B", u"New"}));
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x", u"y", u"z"}));
    EXPECT_EQ(SettingNames(u"New"), AllOf({u"n"}));
    ASSERT_EQ(m_object->RemoveSetting(u"A", u"x"), 0);
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u"back"), 0);
    ASSERT_EQ(m_object->RemoveSetting(u"New", u"n"), 0);
    ASSERT_EQ(m_object->RemoveSection(u"B"), 0);
    EXPECT_EQ(SectionNames(), AllOf({u"A", u"New"})) << "a section that became empty is still one";
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"y", u"z", u"x"}));
    EXPECT_EQ(SettingNames(u"B"), NoneFor(result::SectionNotFound));
}

TEST_P(SectionTest, Names_FollowEveryChangeBesideDoubledOnes)
{
    Load(
        "<Section name='A'><Setting name='x'>1</Setting></Section><Section name='B'/>"
        "<Section name='A'><Setting name='x'>2</Setting><Setting name='y'/></Section>");
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"z", u"1"), 0);
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x", u"z", u"y"})) << "a new one goes into the first section of that name";
    ASSERT_EQ(m_object->RemoveSetting(u"A", u"x"), 0);
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"z", u"x", u"y"})) << "the second is found now";
    ASSERT_EQ(m_object->RemoveSection(u"A"), 0);
    EXPECT_EQ(SectionNames(), AllOf({u"B", u"A"}));
    EXPECT_EQ(SettingNames(u"A"), AllOf({u"x", u"y"}));
}

TEST_P(SectionTest, Names_ThatWereHandedOutStayAsTheyAre)
{
    Load("<Section name='A'><Setting name='x'/></Section>");
    OutObject<IPolicyNames> sections;
    OutObject<IPolicyNames> settings;
    ASSERT_EQ(m_object->GetSectionNames(sections), 0);
    ASSERT_EQ(m_object->GetSettingNames(u"A", settings), 0);
    ASSERT_EQ(m_object->RemoveSection(u"A"), 0);
    m_object.reset();
    Load("");
    EXPECT_EQ(ReadNames(*sections.Take()), (Names{u"A"}));
    EXPECT_EQ(ReadNames(*settings.Take()), (Names{u"x"}));
}

TEST_P(SectionTest, Names_AndGettersAgree)
{
    Load(
        "<Section name='A'><Setting name='x'>1</Setting><Setting name=''>2</Setting><Setting name='x'>3</Setting>"
        "</Section><Section name='B'/><Section/><Section name='A'><Setting name='y'>4</Setting></Section>");
    for (const std::u16string& section : SectionNames().names) {
        for (const std::u16string& setting : SettingNames(section).names) {
            EXPECT_EQ(Get(section, setting).code, 0) << Utf8(section) << " " << Utf8(setting);
            EXPECT_EQ(GetStored(section, setting), Get(section, setting));
        }
    }
}

TEST_P(SectionTest, GetStoredSetting_ExpandsNoMacros)
{
    RegisterMacro(u"Home", u"/home");
    EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", u"<Home>, &lt;"), 0);
    const auto stored = GetStored(u"A", u"x");
    const auto expanded = Get(u"A", u"x");
    UnregisterAllMacros();
    EXPECT_EQ(stored, (Read{0, u"<Home>, &lt;"}));
    EXPECT_EQ(expanded, (Read{0, u"/home, &lt;"}));
}

TEST_P(SectionTest, GetStoredSetting_OfAMissingSectionOrSettingLeavesTheSlotAlone)
{
    Load("<Section name='A'><Setting name='x'>1</Setting></Section>");
    EXPECT_EQ(GetStored(u"B", u"x"), Failed(result::SectionNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(GetStored(u"A", u"y"), Failed(result::SettingNotFound));
    EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::SettingNotFound));
}

TEST_P(SectionTest, GetStoredSetting_GivesTheWholeText)
{
    Load("<Section name='A'><Setting name='x'> a<![CDATA[<b>]]><i>c</i>&#xE4; </Setting><Setting name='y'/></Section>");
    EXPECT_EQ(GetStored(u"A", u"x"), Get(u"A", u"x"));
    EXPECT_EQ(GetStored(u"A", u"y"), (Read{0, u""}));
}

TEST_P(SectionTest, TakenVersion_OfANewObjectAndOfAnEntryWithoutOneIsEmpty)
{
    EXPECT_EQ(TakenVersion(), (Read{0, u""}));
    Load("<Section name='A'/>");
    EXPECT_EQ(TakenVersion(), (Read{0, u""}));
}

TEST_P(SectionTest, TakenVersion_IsTheStampOfTheEntryAndStaysWhateverIsDone)
{
    EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", u"1"), 0);
    PassThroughFile();
    EXPECT_EQ(TakenVersion(), (Read{0, u"20260102030405"}));
    EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", u"2"), 0);
    EXPECT_FALSE(Data().empty()) << "a task writes a new stamp into its text";
    EXPECT_EQ(TakenVersion(), (Read{0, u"20260102030405"}));
}

}  // namespace zupm::test
