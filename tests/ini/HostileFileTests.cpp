// Existing INI files of every form: a setting that a reader finds in them is never lost.
#include <algorithm>

#include "tests/ini/IniTest.h"

namespace zupm::test {

namespace {

struct FileRow {
    const char* label;
    std::string_view bytes;
};

constexpr FileRow kFiles[] = {
    {"empty", ""sv},
    {"without a last line end", "[Other]\r\nx=1"sv},
    {"with LF alone", "[Other]\nx=1\n"sv},
    {"with CR alone", "[Other]\rx=1\r[More]\ry=2"sv},
    {"with lone CRs between CR LF", "[Other]\r\nx=1\ry=2\r\n\r\r\n"sv},
    {"with NULs", "[Other]\r\nx=\0 1\0\r\n\0\0\0"sv},
    {"with an end of file in the old way", "[Other]\r\nx=1\r\n\x1A"sv},
    {"with a section that never ends", "[Other\r\nx=1\r\n[\r\n"sv},
    {"with nothing but noise", "=\r\n;\r\n]\r\n[]\r\n=x\r\n==\r\n"sv},
    {"with bytes that are no UTF-8", "[Caf\xE9]\r\nx=\xFF\x80\xFE\r\n"sv},
    {"UTF-8 with a signature", "\xEF\xBB\xBF[Caf\xC3\xA9]\r\nx=1\r\n"sv},
    {"UTF-8 with half a character at the end", "[Caf\xC3\xA9]\r\nx=\xE5\xAE"sv},
    {"UTF-16", "\xFF\xFE[\0O\0]\0\r\0\n\0x\0=\0\x31\x4E\r\0\n\0"sv},
    {"UTF-16 without a last line end", "\xFF\xFE[\0O\0]\0\r\0\n\0x\0=\0\x31\x00"sv},
    {"UTF-16 with a lone surrogate", "\xFF\xFE[\0O\0]\0\r\0\n\0x\0=\0\x00\xD8\r\0\n\0"sv},
    {"UTF-16 signature alone", "\xFF\xFE"sv},
    {"UTF-16 without a signature", "[\0O\0]\0\r\0\n\0x\0=\0\x31\x00\r\0\n\0"sv},
    {"UTF-16 with half a unit at the end", "\xFF\xFE[\0O\0]\0\r\0\n\0x"sv},
    {"UTF-16 with its high bytes first", "\xFE\xFF\0[\0O\0]\0\r\0\n"sv},
};

class HostileIni : public IniTest {
protected:
    /// Every setting that a reader found before is found now, with its value.
    void ExpectSettingsOf(std::string_view before) const
    {
        const IniReader old(DecodeIni(before));
        const IniReader now = Reader();
        for (const std::u16string& name : old.Names()) {
            const std::size_t slash = name.find(u'/');
            EXPECT_EQ(now.Value(name.substr(0, slash), name.substr(slash + 1)),
                      old.Value(name.substr(0, slash), name.substr(slash + 1)))
                << Utf8(name);
        }
    }
};

}  // namespace

TEST_F(HostileIni, WhatAReaderFinds_IsFoundAfterwards)
{
    for (const FileRow& row : kFiles) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(row.bytes, {{u"S", u"x", u"1"}}), 0);
        ExpectSettingsOf(row.bytes);
        EXPECT_EQ(Reader().Value(u"S", u"x"), u"1");
        EXPECT_TRUE(m_log.Take().empty());
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"task.ini"});
    }
}

TEST_F(HostileIni, TextThatTheEncodingLacks_TurnsTheFileIntoUtf16)
{
    for (const FileRow& row : kFiles) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(DumpOver(row.bytes, {{u"S", u"x", u"\u5B9A\u671F"}}), 0);
        const std::string now = Bytes();
        const std::u16string text = DecodeIni(now);
        EXPECT_EQ(text.find(u'\uFFFD'), text.npos);
        // Natively UTF-8 among bytes that are none.
        EXPECT_TRUE(IniReader(text).Value(u"S", u"x") == u"\u5B9A\u671F" ||
                    now.find("\r\nx=\xE5\xAE\x9A\xE6\x9C\x9F\r\n") != now.npos);
        // UTF-8, the 8-bit encoding of the native target, lacks nothing.
        constexpr bool kIsUtf8 = !std::is_same_v<wchar_t, std::filesystem::path::value_type>;
        EXPECT_EQ(now.starts_with("\xFF\xFE") || now.starts_with("\xFE\xFF"),
                  !kIsUtf8 || row.bytes.starts_with("\xFF\xFE") || row.bytes.starts_with("\xFE\xFF"));
    }
}

TEST_F(HostileIni, AHugeFile_KeepsEveryLine)
{
    std::string old;
    for (int section = 0; section < 2000; ++section) {
        old += "[Section " + std::to_string(section) + "]\r\n; a comment of that section\r\n";
        for (int key = 0; key < 20; ++key) {
            old += "key" + std::to_string(key) + "=a value that somebody else wrote there\r\n";
        }
    }
    EXPECT_EQ(DumpOver(old, {{u"Section 1000", u"key7", u"ours"}}), 0);
    const std::string now = Bytes();
    const std::size_t place = now.find("key7=ours\r\n");
    ASSERT_NE(place, now.npos);
    EXPECT_EQ(now.substr(0, place), old.substr(0, place));
    const std::size_t behind = old.find("\r\n", place);
    const std::size_t ours = now.find("\r\n", place);
    EXPECT_EQ(now.substr(ours, old.size() - behind), old.substr(behind));
}

}  // namespace zupm::test
