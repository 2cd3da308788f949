// No text makes a line of its own in an INI file: it is written as it is, or refused with a log line. A reader
// gets a value without the blanks at its ends and without a pair of quotes, as from the system's call.
#include <algorithm>

#include "tests/ini/IniTest.h"

namespace zupm::test {

namespace {

class IniInjection : public IniTest {
protected:
    /// The section "Task" of a new task: its header and eight fields.
    static constexpr std::size_t kFields = 9;

    /// The file still has its old lines in their order, and `added` lines more.
    void ExpectOldLinesAnd(std::size_t added) const
    {
        const std::vector<std::u16string> old = LinesOf(std::u16string(kOld.begin(), kOld.end()));
        const std::vector<std::u16string> now = LinesOf(DecodeIni(Bytes()));
        EXPECT_EQ(now.size(), old.size() + added);
        auto at = now.begin();
        for (const std::u16string& line : old) {
            at = std::find(at, now.end(), line);
            ASSERT_NE(at, now.end()) << Utf8(line);
        }
    }
    static std::vector<std::u16string> LinesOf(std::u16string_view text)
    {
        std::vector<std::u16string> lines;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
            if (end > 0) {
                lines.emplace_back(text.substr(0, end));
            }
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return lines;
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

TEST_F(IniInjection, AValue_IsReadBackOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", std::u16string(row.text)}, {u"S", u"y", u"next"}}), 0);
        ExpectOldLinesAnd(kFields + (row.isTaken ? 3 : 2));
        ExpectRefusals(row.isTaken ? 0 : 1);
        EXPECT_EQ(Reader().Value(u"S", u"x"), row.isTaken ? std::optional(IniReader::AsRead(row.text)) : std::nullopt);
        EXPECT_EQ(Reader().Value(u"S", u"y"), u"next");
    }
}

TEST_F(IniInjection, ASectionsName_IsOneLineOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(kOld, {{std::u16string(row.text), u"x", u"1"}, {u"S", u"y", u"next"}}), 0);
        // The section without a name has no line.
        const bool hasLine = IniReader::AsRead(row.text) != u"" || row.text.starts_with(u'"');
        ExpectOldLinesAnd(kFields + 2 + (row.isTaken ? 1 : 0) + (row.isTaken && hasLine ? 1 : 0));
        ExpectRefusals(row.isTaken ? 0 : 1);
        EXPECT_EQ(Reader().Value(u"S", u"y"), u"next");
    }
}

TEST_F(IniInjection, AKey_IsOneLineOrRefused)
{
    for (const IniText& row : kIniTexts) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(kOld, {{u"S", std::u16string(row.text), u"1"}}), 0);
        ExpectOldLinesAnd(kFields + (row.isTaken ? 2 : 0));
        ExpectRefusals(row.isTaken ? 0 : 1);
    }
}

TEST_F(IniInjection, AFieldOfTheTask_IsReadBackOrEndsTheDump)
{
    std::vector<IniText> rows(std::begin(kIniTexts), std::end(kIniTexts));
    rows.insert(rows.end(), std::begin(kControlTexts), std::end(kControlTexts));
    for (const IniText& row : rows) {
        SCOPED_TRACE(row.label);
        m_folder.Write(u"task.ini", kOld);
        const TaskClient task(Create<IPolicyTask>());
        ASSERT_EQ(task.Object()->put_TaskType(Bstr(row.text).Get()), 0);
        EXPECT_EQ(Dump(task), row.isTaken ? 0 : result::GeneralFailure);
        ExpectOldLinesAnd(row.isTaken ? kFields : kFields - 2);
        ExpectRefusals(row.isTaken ? 0 : 1);
        EXPECT_EQ(Reader().Value(u"Task", u"TaskType"),
                  row.isTaken ? std::optional(IniReader::AsRead(row.text)) : std::nullopt);
    }
}

TEST_F(IniInjection, AValueOfAnyLength_IsReadBackExactly)
{
    for (const std::size_t length : {0x7FFEU, 0x7FFFU, 0xFFFEU, 0xFFFFU, 0x10000U, 0x100000U}) {
        std::u16string text(length, u'x');
        text[length / 2] = u'=';
        EXPECT_EQ(DumpOver(kOld, {{u"S", u"x", text}, {u"S", u"y", u"next"}}), 0);
        ExpectOldLinesAnd(kFields + 3);
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
        EXPECT_EQ(reader.Value(u"S", u"x"), row.isTaken ? IniReader::AsRead(row.text) : u"\"old\" ; note");
    }
}

}  // namespace zupm::test
