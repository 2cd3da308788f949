// The store's settings in an INI file.
#include "common/Macros.h"
#include "tests/settings/ContainerTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

class StoreExport : public ContainerTest {
protected:
    [[nodiscard]] std::u16string Path() const { return m_folder.Path(u"out.ini"); }
    [[nodiscard]] std::string File() const { return m_folder.Has(u"out.ini") ? m_folder.Read(u"out.ini") : "no file"; }

    TempFolder m_folder;
};

TEST_F(StoreExport, AnEmptyStoreWritesNothing)
{
    Load("<P/>");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "no file");
}

TEST_F(StoreExport, ASectionWithoutSettingsWritesNothing)
{
    Load(R"(<P><Section name="S"/></P>)");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "no file");
}

TEST_F(StoreExport, SettingsAreWrittenInCodeUnitOrder)
{
    Load(R"(<P><Section name="b"><Setting name="z">1</Setting><Setting name="Z">2</Setting></Section>
        <Section name="C"><Setting name="y">3</Setting></Section></P>)");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    // An INI file knows no case, so the second "z" replaces the first.
    EXPECT_EQ(File(), "[C]\r\ny=3\r\n[b]\r\nZ=1\r\n");
}

TEST_F(StoreExport, NamesThatAreOneInAnIniFileAreReportedAsDuplicates)
{
    Load(R"(<P><Section name="S"><Setting name="a">1</Setting><Setting name="A">2</Setting></Section>
        <Section name=" s "><Setting name="a">3</Setting><Setting name="b">4</Setting></Section></P>)");
    OpenStore();
    LogCapture log;
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    constexpr const char* kEnd = " replaces another of that name in the INI file";
    constexpr const char* kBegin = "CXMLDataObject::WriteAllSettingsToIniFile() -- Setting ";
    // " s " is written first, and so is "A". The blank after it goes when the file is read for the next setting.
    EXPECT_EQ(log.Take(), (std::vector<LogLine>{{8, std::string(kBegin) + "A of the section S" + kEnd},
                                                {8, std::string(kBegin) + "a of the section S" + kEnd}}));
    EXPECT_EQ(File(), "[s]\r\na=1\r\nb=4\r\n");
}

TEST_F(StoreExport, ANameRepeatedWithTheSameValueIsNotReported)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting><Setting name="a">1</Setting></Section>
        <Section name="s"><Setting name="a">1</Setting></Section>
        <Section name="t"><Setting name="B">1</Setting><Setting name="b">2</Setting></Section>
        <Section name="t "><Setting name="b">2</Setting></Section></P>)");
    OpenStore();
    LogCapture log;
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(log.Take(), (std::vector<LogLine>{{8,
                                                 "CXMLDataObject::WriteAllSettingsToIniFile() -- Setting b of the "
                                                 "section t replaces another of that name in the INI file"}}));
    EXPECT_EQ(File(), "[S]\r\nA=1\r\n[t]\r\nB=2\r\n");
}

TEST_F(StoreExport, ASettingThatTheFileRefusesReplacesNothing)
{
    Load("<P><Section name='S'><Setting name='A'>1</Setting><Setting name='a'>2&#10;3</Setting></Section></P>");
    OpenStore();
    LogCapture log;
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    const std::vector<LogLine> lines = log.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].level, 7);
    EXPECT_EQ(File(), "[S]\r\nA=1\r\n");
}

TEST_F(StoreExport, OfDuplicatesOnlyTheFirstIsWritten)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting><Setting name="A">2</Setting></Section></P>)");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "[S]\r\nA=1\r\n");
}

TEST_F(StoreExport, ValuesAreWrittenRaw)
{
    RegisterMacro(u"Drive", u"C:");
    Load(R"(<P><Section name="S"><Setting name="A">&lt;Drive&gt;\x</Setting></Section></P>)");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "[S]\r\nA=<Drive>\\x\r\n");
    UnregisterAllMacros();
}

TEST_F(StoreExport, ASettingThatTheFileRefusesIsLeftOutAndTheOthersAreWritten)
{
    Load("<P><Section name=\"S\"><Setting name=\"A\">1&#10;[T]</Setting><Setting name=\"B\">2</Setting></Section></P>");
    OpenStore();
    EXPECT_EQ(Store().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "[S]\r\nB=2\r\n");
}

TEST_F(StoreExport, ACursorThatNeverHadAStoreRefuses)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
    MakeCursor();
    EXPECT_EQ(Cursor().WriteAllSettingsToIniFile(Path()), result::CursorNotInitialised);
    EXPECT_EQ(File(), "no file");
}

TEST_F(StoreExport, ACursorExportsItsStore)
{
    Load(R"(<P><Section name="S"><Setting name="A">1</Setting></Section></P>)");
    MakeCursor();
    ASSERT_EQ(Cursor().Initialize(), result::Success);
    EXPECT_EQ(Cursor().WriteAllSettingsToIniFile(Path()), result::Success);
    EXPECT_EQ(File(), "[S]\r\nA=1\r\n");
}

}  // namespace
}  // namespace zupm::test
