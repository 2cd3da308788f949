// No text becomes anything else in an INI file than what it was: a reader gets it back exactly, or it is refused with a
// log line; nothing else in the file changes.
#include <gmock/gmock.h>

#include "tests/ini/IniTest.h"

namespace zupm::test {

namespace {

using testing::UnorderedElementsAreArray;

class IniInjection : public IniTest {
protected:
    /// What was there before is there still, byte for byte where the encoding is the same one.
    void ExpectOldContent() const
    {
        EXPECT_TRUE(DecodeIni(Bytes()).starts_with(std::u16string(kOld.begin(), kOld.end())));
    }
    void ExpectRefusals(std::size_t count)
    {
        const std::vector<LogLine> lines = m_log.Take();
        ASSERT_EQ(lines.size(), count);
        for (const LogLine& line : lines) {
            EXPECT_EQ(line.level, 7);
            EXPECT_TRUE(line.text.starts_with("WritePrivateProfileStringW() - ")) << line.text;
        }
    }
};

}  // namespace

TEST_F(IniInjection, AValue_IsReadBackExactlyOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        const std::u16string text(row.text);
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", text}, {u"S", u"y", u"next"}}), 0);
        ExpectOldContent();
        ExpectRefusals(row.asValue ? 0 : 1);
        const IniReader reader = Reader();
        EXPECT_EQ(reader.Value(u"S", u"x"), row.asValue ? std::optional(text) : std::nullopt);
        std::vector<std::u16string> names{u"S/y"};
        if (row.asValue) {
            names.emplace_back(u"S/x");
        }
        EXPECT_THAT(reader.Names(), UnorderedElementsAreArray(NamesWith(names)));
    }
}

TEST_F(IniInjection, ASectionsName_IsReadBackExactlyOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        const std::u16string text(row.text);
        EXPECT_EQ(DumpOver(kOld, {{text, u"x", u"1"}, {u"S", u"y", u"next"}}), 0);
        ExpectOldContent();
        ExpectRefusals(row.asSection ? 0 : 1);
        const IniReader reader = Reader();
        EXPECT_EQ(reader.Value(text, u"x"), row.asSection ? std::optional<std::u16string>(u"1") : std::nullopt);
        std::vector<std::u16string> names{u"S/y"};
        if (row.asSection) {
            names.push_back(text + u"/x");
        }
        EXPECT_THAT(reader.Names(), UnorderedElementsAreArray(NamesWith(names)));
    }
}

TEST_F(IniInjection, AKey_IsReadBackExactlyOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        const std::u16string text(row.text);
        EXPECT_EQ(DumpOver(kOld, {{u"S", text, u"1"}, {u"S", u"y", u"next"}}), 0);
        ExpectOldContent();
        ExpectRefusals(row.asKey ? 0 : 1);
        const IniReader reader = Reader();
        EXPECT_EQ(reader.Value(u"S", text), row.asKey ? std::optional<std::u16string>(u"1") : std::nullopt);
        std::vector<std::u16string> names{u"S/y"};
        if (row.asKey) {
            names.push_back(u"S/" + text);
        }
        EXPECT_THAT(reader.Names(), UnorderedElementsAreArray(NamesWith(names)));
    }
}

TEST_F(IniInjection, AFieldOfTheTask_IsReadBackExactlyOrEndsTheDump)
{
    std::vector<IniText> rows(std::begin(kIniTexts), std::end(kIniTexts));
    rows.insert(rows.end(), std::begin(kControlTexts), std::end(kControlTexts));
    for (const IniText& row : rows) {
        SCOPED_TRACE(row.label);
        m_folder.Write(u"task.ini", kOld);
        const TaskClient task(Create<IPolicyTask>());
        ASSERT_EQ(task.Object()->put_TaskType(Bstr(row.text).Get()), 0);
        EXPECT_EQ(Dump(task), row.asValue ? 0 : result::GeneralFailure);
        ExpectOldContent();
        ExpectRefusals(row.asValue ? 0 : 1);
        const std::optional<std::u16string> read = Reader().Value(u"Task", u"TaskType");
        EXPECT_EQ(read, row.asValue ? std::optional(std::u16string(row.text)) : std::nullopt);
    }
}

TEST_F(IniInjection, AValueOfAnyLength_IsReadBackExactly)
{
    for (const std::size_t length : {0x7FFEU, 0x7FFFU, 0xFFFEU, 0xFFFFU, 0x10000U, 0x100000U}) {
        std::u16string text(length, u'x');
        text[length / 2] = u'=';
        text.back() = u' ';
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", text}, {u"S", u"y", u"next"}}), 0);
        ExpectOldContent();
        EXPECT_TRUE(Reader().Value(u"S", u"x") == text) << length;
        EXPECT_EQ(Reader().Value(u"S", u"y"), u"next") << length;
    }
}

TEST_F(IniInjection, AValueInPlaceOfAnother_TakesNothingElseAlong)
{
    constexpr std::string_view kThree = "[S]\r\nw=1\r\nx=\"old\" ; note\r\ny=2\r\n";
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(kThree, {{u"S", u"x", std::u16string(row.text)}}), 0);
        const IniReader reader = Reader();
        EXPECT_EQ(reader.Value(u"S", u"w"), u"1");
        EXPECT_EQ(reader.Value(u"S", u"y"), u"2");
        EXPECT_EQ(reader.Value(u"S", u"x"), row.asValue ? std::u16string(row.text) : u"\"old\" ; note");
    }
}

}  // namespace zupm::test
