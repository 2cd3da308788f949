// What the store writes into an element.
#include <iterator>
#include <random>

#include "tests/settings/ContainerTest.h"
#include "tests/support/Difference.h"

namespace zupm::test {
namespace {

using StoreChange = ContainerTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kOneSetting =
    "<P>\n"
    "  <Section name=\"S\">\n"
    "    <Setting name=\"A\">1</Setting>\n"
    "  </Section>\n"
    "</P>\n";

TEST_F(StoreChange, AValueIsReplacedInPlace)
{
    Load(kOneSetting);
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"S", u"A", u"2 < 3", 0), result::Success);
    EXPECT_EQ(Value(u"S", u"A"), "2 < 3");
    EXPECT_EQ(Difference(kOneSetting, Text()),
              "-     <Setting name=\"A\">1</Setting>\n"
              "+     <Setting name=\"A\">2 &lt; 3</Setting>\n");
}

TEST_F(StoreChange, WithoutCreateAMissingSectionIsReportedAsAMissingSetting)
{
    Load(kOneSetting);
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"None", u"A", u"2", 0), result::SettingNotFound);
    EXPECT_EQ(Store().SetSettingValue(u"S", u"None", u"2", 0), result::SettingNotFound);
    EXPECT_EQ(Text(), kOneSetting);
}

TEST_F(StoreChange, AMissingSectionIsAppendedWithItsSetting)
{
    Load(kOneSetting);
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"T", u"B", u"2", 1), result::Success);
    EXPECT_EQ(Value(u"T", u"B"), "2");
    Load(Text());
    OpenStore();
    EXPECT_EQ(Value(u"S", u"A"), "1");
    EXPECT_EQ(Value(u"T", u"B"), "2");
    const auto last = *++Root().Begin();
    EXPECT_TRUE(last.NameIs(u"Section"));
    EXPECT_TRUE((*last.Begin()).NameIs(u"Setting"));
}

TEST_F(StoreChange, InAnEmptyContainerOneSectionWithOneSettingIsMade)
{
    Load("<P/>");
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"S", u"A", u"1", 1), result::Success);
    EXPECT_EQ(Text(), R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
}

TEST_F(StoreChange, ASettingIsAddedToTheFirstOfTwoSectionsOfOneName)
{
    Load(R"(<P><Section name="S"/><Section name="S"/></P>)");
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"S", u"A", u"1", 1), result::Success);
    EXPECT_EQ(Text(), R"(<P><Section name="S"><Setting name="A">1</Setting></Section><Section name="S"/></P>)");
}

TEST_F(StoreChange, AnElementWithoutANameIsNotTheSectionOfTheEmptyName)
{
    Load("<P><Section/></P>");
    OpenStore();
    EXPECT_EQ(Store().SetSettingValue(u"", u"A", u"1", 1), result::Success);
    EXPECT_EQ(Text(), R"(<P><Section/><Section name=""><Setting name="A">1</Setting></Section></P>)");
}

TEST_F(StoreChange, AnAddedSettingHasNoTextUntilItIsWritten)
{
    Load(kOneSetting);
    OpenStore();
    result::Code code = result::Unexpected;
    const AdvXMLParser::Element added = Store().AddSetting(u"S", u"B", code);
    EXPECT_EQ(code, result::Success);
    EXPECT_FALSE(added.IsNull());
    EXPECT_EQ(Value(u"S", u"B"), "");
}

TEST_F(StoreChange, AddingRebuildsTheIndexesSoDuplicatesAreLoggedAgain)
{
    Load(R"(<P><Section name="S"/><Section name="S"/></P>)");
    OpenStore();
    ASSERT_EQ(Store().SetSettingValue(u"S", u"A", u"1", 1), result::Success);
    EXPECT_EQ(m_log.Take().size(), 1U);
    ASSERT_EQ(Store().SetSettingValue(u"T", u"A", u"1", 1), result::Success);
    EXPECT_EQ(m_log.Take().size(), 2U);
}

TEST_F(StoreChange, AValueThatXmlCannotHoldLeavesTheOldOne)
{
    const std::u16string_view values[] = {std::u16string_view(u"\0", 1), u"\x1F", u"\xFFFF", u"\xD800", u"\xDC00x"};
    for (const std::u16string_view value : values) {
        Load(kOneSetting);
        OpenStore();
        EXPECT_EQ(Store().SetSettingValue(u"S", u"A", value, 1), result::Unexpected);
        EXPECT_THAT(m_log.Take(), ElementsAre(LogLine{1, "CXMLDataObject::SetSettingValue()"}));
        EXPECT_EQ(Text(), kOneSetting);
        EXPECT_EQ(Value(u"S", u"A"), "1");
    }
}

TEST_F(StoreChange, NothingIsCreatedForAValueOrANameThatXmlCannotHold)
{
    const struct {
        const char* label;
        std::u16string_view section;
        std::u16string_view setting;
        std::u16string_view value;
        const char* operation;
    } rows[] = {
        {"value", u"T", u"B", u"\x01", "CXMLDataObject::SetSettingValue()"},
        {"section", u"\x01", u"B", u"2", "CXMLDataObject::AddSetting()"},
        {"setting in a new section", u"T", u"\xFFFE", u"2", "CXMLDataObject::AddSetting()"},
        {"setting in an old section", u"S", u"\xFFFE", u"2", "CXMLDataObject::AddSetting()"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        Load(kOneSetting);
        OpenStore();
        EXPECT_EQ(Store().SetSettingValue(row.section, row.setting, row.value, 1), result::Unexpected);
        EXPECT_THAT(m_log.Take(), ElementsAre(LogLine{1, row.operation}));
        EXPECT_EQ(Text(), kOneSetting);
        EXPECT_EQ(Value(u"S", u"A"), "1");
    }
}

TEST_F(StoreChange, InAContainerThatWasDeletedNothingCanBeCreated)
{
    Load(R"(<R><P><Section name="S"/></P></R>)");
    AdvXMLParser::Element container = *Root().Begin();
    CXMLDataObject store(container, nullptr);
    ASSERT_EQ(store.Initialize(), result::Success);
    container.Delete();
    EXPECT_EQ(store.SetSettingValue(u"S", u"A", u"1", 1), result::NotCreated);
    result::Code code = result::Success;
    EXPECT_TRUE(store.AddSetting(u"T", u"A", code).IsNull());
    EXPECT_EQ(code, result::NotCreated);
    EXPECT_EQ(Text(), "<R></R>");
}

TEST_F(StoreChange, RemovingASettingDeletesItsElementAlone)
{
    Load(
        "<P>\n  <Section name=\"S\">\n    <Setting name=\"A\">1</Setting>\n    <Setting name=\"B\">2</Setting>\n"
        "  </Section>\n</P>\n");
    OpenStore();
    const std::string before = Text();
    EXPECT_EQ(Store().RemoveSetting(u"S", u"A"), result::Success);
    EXPECT_EQ(Difference(before, Text()), "-     <Setting name=\"A\">1</Setting>\n");
    EXPECT_EQ(Value(u"S", u"A"), "code -1201");
    EXPECT_EQ(Value(u"S", u"B"), "2");
}

TEST_F(StoreChange, RemovingTheFirstOfTwoSettingsOfOneNameUncoversTheSecond)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting><Setting name="A">2</Setting></Section></P>)");
    OpenStore();
    EXPECT_EQ(Store().RemoveSetting(u"S", u"A"), result::Success);
    EXPECT_EQ(Value(u"S", u"A"), "2");
}

TEST_F(StoreChange, RemovingWhatIsMissing_ReportsTheLevelThatIsMissing)
{
    Load(kOneSetting);
    OpenStore();
    EXPECT_EQ(Store().RemoveSetting(u"T", u"A"), result::SectionNotFound);
    EXPECT_EQ(Store().RemoveSetting(u"S", u"B"), result::SettingNotFound);
    EXPECT_EQ(Text(), kOneSetting);
    EXPECT_THAT(m_log.Take(), IsEmpty());
}

/// After any edits every lookup finds what a lookup in a new store finds.
TEST_F(StoreChange, AfterAnyEditsTheStoreFindsWhatAFreshOneFinds)
{
    constexpr std::u16string_view kNames[] = {u"", u"A", u"B", u"a", u"\u00E4 < & \"", u"tab\tand\nline"};
    std::mt19937 engine(2);
    const auto name = [&] { return kNames[engine() % std::size(kNames)]; };
    for (int document = 0; document < 40; ++document) {
        // Half of them begin with names that occur twice.
        Load(document % 2 == 0 ? "<P/>"
                               : R"(<P><x name="A"><y name="B">1</y><y name="B">2</y></x><x/><x name="A"/></P>)");
        OpenStore();
        for (int edit = 0; edit < 60; ++edit) {
            result::Code code = result::Success;
            switch (engine() % 4) {
                case 0:
                    // Adds a setting a second time if it exists.
                    EXPECT_FALSE(Store().AddSetting(name(), name(), code).IsNull());
                    break;
                case 1:
                    static_cast<void>(Store().RemoveSetting(name(), name()));
                    break;
                default:
                    EXPECT_EQ(Store().SetSettingValue(name(), name(), std::u16string(engine() % 3, u'v'), 1), 0);
            }
            CXMLDataObject fresh(Root(), nullptr);
            ASSERT_EQ(fresh.Initialize(), result::Success);
            for (const std::u16string_view section : kNames) {
                for (const std::u16string_view setting : kNames) {
                    result::Code freshCode = result::Success;
                    const bool isSame =
                        Store().GetSetting(section, setting, code) == fresh.GetSetting(section, setting, freshCode);
                    ASSERT_TRUE(isSame && code == freshCode) << Text();
                }
            }
        }
    }
}

}  // namespace
}  // namespace zupm::test
