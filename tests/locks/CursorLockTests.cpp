// Which operations of a section cursor take its lock, and of a store the store's inside it.
#include <gtest/gtest.h>

#include "common/CzuLogger.h"
#include "settings/CSectionParser.h"
#include "tests/locks/LockUse.h"
#include "tests/support/TempFolder.h"
#include "xml/Document.h"

namespace zupm::test {

namespace {

struct CursorRow {
    const char* name;
    result::Code (*call)(CSectionParser& cursor);
};

constexpr CursorRow kRows[] = {
    {"Initialize", [](CSectionParser& c) { return c.Initialize(); }},
    {"SetSettingValue", [](CSectionParser& c) { return c.SetSettingValue(u"S", u"A", u"1"); }},
    {"GetSettingValue",
     [](CSectionParser& c) {
         std::u16string value;
         return c.GetSettingValue(u"S", u"A", value);
     }},
    {"GetStoredValue",
     [](CSectionParser& c) {
         std::u16string value;
         return c.GetStoredValue(u"S", u"A", value);
     }},
    {"GetSectionNames",
     [](CSectionParser& c) {
         NameList names;
         return c.GetSectionNames(names);
     }},
    {"GetSettingNames",
     [](CSectionParser& c) {
         NameList names;
         return c.GetSettingNames(u"S", names);
     }},
    {"RemoveSetting", [](CSectionParser& c) { return c.RemoveSetting(u"S", u"A"); }},
    {"Deinitialize", [](CSectionParser& c) { return c.Deinitialize(); }},
};

/// The cursor's lock: the one that a refused call takes.
const CCriticalSection* LockOf(CSectionParser& cursor)
{
    const LockUse use;
    EXPECT_EQ(cursor.RemoveSetting(u"S", u"A"), result::CursorNotInitialised);
    return use.Entries().empty() ? nullptr : use.Entries().front().section;
}

}  // namespace

TEST(CursorLocks, AreTakenFirstByEveryOperationAndLeftByAll)
{
    const AdvXMLParser::Document document(u"P");
    CSectionParser cursor(document.GetRoot(), nullptr);
    const CCriticalSection* const lock = LockOf(cursor);
    ASSERT_NE(lock, nullptr);
    for (const CursorRow& row : kRows) {
        const LockUse use;
        EXPECT_EQ(row.call(cursor), 0) << row.name;
        ASSERT_FALSE(use.Entries().empty()) << row.name;
        EXPECT_EQ(use.Entries().front().section, lock) << row.name;
        for (std::size_t i = 1; i < use.Entries().size(); ++i) {
            EXPECT_EQ(use.Entries()[i].held.front(), lock) << row.name;
        }
        EXPECT_FALSE(IsHeld(lock)) << row.name;
    }
}

TEST(CursorLocks, AreNotHeldDuringAnExport)
{
    const TempFolder folder;
    const AdvXMLParser::Document document(u"P");
    CSectionParser cursor(document.GetRoot(), nullptr);
    const CCriticalSection* const lock = LockOf(cursor);
    ASSERT_EQ(cursor.Initialize(), 0);
    ASSERT_EQ(cursor.SetSettingValue(u"S", u"A", u"1"), 0);
    ASSERT_EQ(cursor.SetSettingValue(u"S", u"a", u"2"), 0);
    int lines = 0;
    const LockUse use;
    CzuLogger::SetSink([&](const LogMessage&) {
        ++lines;
        EXPECT_FALSE(IsHeld(lock));
    });
    EXPECT_EQ(cursor.WriteAllSettingsToIniFile(folder.Path(u"out.ini")), 0);
    CzuLogger::SetSink({});
    EXPECT_EQ(lines, 1) << "the second setting replaces the first in the file, and that is logged during the export";
    EXPECT_TRUE(use.Entered(lock)) << "the store is fetched under the lock";
}

TEST(CursorLocks, OfTheStoreAreTakenInsideWhenItIsBuiltAndDropped)
{
    const AdvXMLParser::Document document(u"P");
    CSectionParser cursor(document.GetRoot(), nullptr);
    const CCriticalSection* const lock = LockOf(cursor);
    for (const auto& call :
         {+[](CSectionParser& c) { return c.Initialize(); }, +[](CSectionParser& c) { return c.Deinitialize(); }}) {
        const LockUse use;
        EXPECT_EQ(call(cursor), 0);
        ASSERT_GE(use.Entries().size(), 2U);
        EXPECT_EQ(use.Entries()[1].held, std::vector{lock});
    }
}

TEST(CursorLocks, AreNotTakenByInitializeOfAnInitialisedCursor)
{
    const AdvXMLParser::Document document(u"P");
    CSectionParser cursor(document.GetRoot(), nullptr);
    ASSERT_EQ(cursor.Initialize(), 0);
    const LockUse use;
    EXPECT_EQ(cursor.Initialize(), 0);
    EXPECT_TRUE(use.Entries().empty());
}

}  // namespace zupm::test
