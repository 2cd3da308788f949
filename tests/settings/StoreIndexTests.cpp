// What the store finds in an element.
#include "tests/settings/ContainerTest.h"

namespace zupm::test {
namespace {

using StoreIndex = ContainerTest;
using testing::ElementsAre;
using testing::IsEmpty;

/// A section with an entry for "Empty" that refers to nothing.
class HollowSection : public CElementMap {
public:
    HollowSection() { InsertNothing(u"Empty"); }
};

/// A store with an entry for "Lost" that has no settings map, and a section "Hollow".
class HollowStore : public CXMLDataObject {
public:
    explicit HollowStore(const AdvXMLParser::Element& container) : CXMLDataObject(container, nullptr)
    {
        EXPECT_EQ(Initialize(), result::Success);
        Sections().Insert(u"Lost", [] { return nullptr; });
        Sections().Insert(u"Hollow", [] { return std::make_unique<HollowSection>(); });
    }
};

TEST_F(StoreIndex, EmptyEntries_ReadAsNotCreated)
{
    Load("<P/>");
    HollowStore store(Root());
    for (const auto& [section, setting] : {std::pair(u"Lost", u"A"), std::pair(u"Hollow", u"Empty")}) {
        result::Code code = result::Success;
        EXPECT_TRUE(store.GetSetting(section, setting, code).IsNull());
        EXPECT_EQ(code, result::NotCreated);
        std::u16string value = u"untouched";
        EXPECT_EQ(store.GetSettingValue(section, setting, value), result::NotCreated);
        EXPECT_EQ(value, u"untouched");
        EXPECT_EQ(store.RemoveSetting(section, setting), result::NotCreated);
        EXPECT_EQ(store.SetSettingValue(section, setting, u"1", 0), result::SettingNotFound);
    }
    EXPECT_EQ(Text(), "<P/>");
}

TEST_F(StoreIndex, EmptyEntries_AreNotListed)
{
    Load("<P/>");
    HollowStore store(Root());
    NameList names;
    ASSERT_EQ(store.GetSectionNames(names), result::Success);
    ASSERT_EQ(names.Size(), 1U);
    EXPECT_EQ(names.At(0), u"Hollow");
    ASSERT_EQ(store.GetSettingNames(u"Hollow", names), result::Success);
    EXPECT_EQ(names.Size(), 0U);
    names.Append(u"untouched");
    EXPECT_EQ(store.GetSettingNames(u"Lost", names), result::NotCreated);
    EXPECT_EQ(store.GetSettingNames(u"None", names), result::SectionNotFound);
    EXPECT_EQ(names.Size(), 1U);
}

TEST_F(StoreIndex, ANewStoreFindsNothingUntilItIsInitialised)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
    CXMLDataObject store(Root(), nullptr);
    result::Code code = result::Success;
    EXPECT_TRUE(store.GetSetting(u"S", u"A", code).IsNull());
    EXPECT_EQ(code, result::SectionNotFound);
    EXPECT_EQ(store.Initialize(), result::Success);
    EXPECT_FALSE(store.GetSetting(u"S", u"A", code).IsNull());
    EXPECT_EQ(code, result::Success);
}

TEST_F(StoreIndex, TheOwnerLinkIsKeptAsItIs)
{
    Load("<P/>");
    const int owner = 0;
    EXPECT_EQ(CXMLDataObject(Root(), &owner).OwnerLink(), &owner);
}

TEST_F(StoreIndex, DuplicateLinesNameTheWholeNames)
{
    const std::string section = std::string(400, 's') + "1";
    const std::string setting = std::string(400, 't') + "2";
    const std::string element = "<Section name='" + section + "'><Setting name='" + setting + "'>1</Setting></Section>";
    Load("<P>" + element + element + "</P>");
    CXMLDataObject store(Root(), nullptr);
    ASSERT_EQ(store.Initialize(), result::Success);
    EXPECT_THAT(m_log.Take(),
                ElementsAre(LogLine{8, "CXMLDataObject::Initialize() -- Section " + section +
                                           " exists already in the section map"},
                            LogLine{8, "CXMLDataObject::Initialize() -- Setting " + setting +
                                           " exists already in the setting map for the section " + section}));
}

TEST_F(StoreIndex, InitialisingTwiceDoesNothingTheSecondTime)
{
    Load(R"(<P><Section name="S"/><Section name="S"/></P>)");
    CXMLDataObject store(Root(), nullptr);
    ASSERT_EQ(store.Initialize(), result::Success);
    EXPECT_EQ(m_log.Take().size(), 1U);
    EXPECT_EQ(store.Initialize(), result::Success);
    EXPECT_THAT(m_log.Take(), IsEmpty());
    EXPECT_EQ(store.Reinitialize(), result::Success);
    EXPECT_EQ(m_log.Take().size(), 1U);
}

TEST_F(StoreIndex, AnyElementNameIsASectionOrASettingWhenItHasAName)
{
    Load(R"(<P><Group name="G"><Value name="V">1</Value></Group></P>)");
    OpenStore();
    EXPECT_EQ(Value(u"G", u"V"), "1");
}

TEST_F(StoreIndex, WhatHasNoNameAndWhatIsNoElementIsPassedOverInSilence)
{
    Load(R"(<P>text<!-- comment --><Section><Setting name="A">1</Setting></Section>
        <Section name="S">text<!-- comment --><Setting>2</Setting><Setting name="B">3</Setting></Section></P>)");
    CXMLDataObject store(Root(), nullptr);
    ASSERT_EQ(store.Initialize(), result::Success);
    EXPECT_THAT(m_log.Take(), IsEmpty());
    std::u16string value;
    EXPECT_EQ(store.GetSettingValue(u"", u"A", value), result::SectionNotFound);
    EXPECT_EQ(store.GetSettingValue(u"S", u"", value), result::SettingNotFound);
    EXPECT_EQ(store.GetSettingValue(u"S", u"B", value), result::Success);
    EXPECT_EQ(value, u"3");
}

TEST_F(StoreIndex, TheEmptyNameIsAName)
{
    Load(R"(<P><Section name=""><Setting name="">nothing</Setting></Section></P>)");
    OpenStore();
    EXPECT_EQ(Value(u"", u""), "nothing");
}

TEST_F(StoreIndex, AValueIsReadFromItsElementAndNeverKept)
{
    Load(R"(<P><Section name="S"><Setting name="A">old</Setting></Section></P>)");
    OpenStore();
    result::Code code = result::Success;
    AdvXMLParser::Element setting = Store().GetSetting(u"S", u"A", code);
    ASSERT_EQ(code, result::Success);
    setting.SetText(u"new");
    EXPECT_EQ(Value(u"S", u"A"), "new");
}

TEST_F(StoreIndex, DeinitialisingForgetsEverythingAndKeepsTheDocument)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
    OpenStore();
    const std::string before = Text();
    EXPECT_EQ(Store().Deinitialize(), result::Success);
    EXPECT_EQ(Value(u"S", u"A"), "code -1200");
    EXPECT_EQ(Store().Deinitialize(), result::Success);
    EXPECT_EQ(Text(), before);
    EXPECT_EQ(Store().Initialize(), result::Success);
    EXPECT_EQ(Value(u"S", u"A"), "1");
}

TEST_F(StoreIndex, ASettingWhoseElementWasDeletedReadsAsMissing)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
    OpenStore();
    result::Code code = result::Success;
    AdvXMLParser::Element setting = Store().GetSetting(u"S", u"A", code);
    setting.Delete();
    const std::string before = Text();
    EXPECT_EQ(Value(u"S", u"A"), "code -1201");
    EXPECT_EQ(Store().SetSettingValue(u"S", u"A", u"2", 1), result::Success);
    EXPECT_EQ(Text(), before);
}

}  // namespace
}  // namespace zupm::test
