// The rules by which the native target edits an INI file's text. The recording in tests/ini shows that the bytes are
// those of the system's own call.
#include <gtest/gtest.h>

#include <string>

#include "text/IniText.h"

namespace zupm {
namespace {

struct WriteCase {
    const char* label;
    std::u16string_view before;
    std::u16string_view after;
};

// Every row writes "new" into key "Key" of section "Task".
constexpr WriteCase kCases[] = {
    {"empty file", u"", u"[Task]\r\nKey=new\r\n"},
    {"new section after the last line", u"[A]\r\nx=1\r\n", u"[A]\r\nx=1\r\n[Task]\r\nKey=new\r\n"},
    {"new section, no last line end", u"[A]\r\nx=1", u"[A]\r\nx=1\r\n[Task]\r\nKey=new\r\n"},
    {"blank lines go", u"[A]\r\n\r\n \r\n", u"[A]\r\n[Task]\r\nKey=new\r\n"},
    {"text before any section", u"stray", u"stray\r\n[Task]\r\nKey=new\r\n"},
    {"line feeds become CR LF", u"[A]\nx=1\n", u"[A]\r\nx=1\r\n[Task]\r\nKey=new\r\n"},
    {"new key", u"[Task]\r\nx=1\r\n", u"[Task]\r\nx=1\r\nKey=new\r\n"},
    {"new key before the next section", u"[Task]\r\nx=1\r\n[B]\r\ny=2\r\n",
     u"[Task]\r\nx=1\r\nKey=new\r\n[B]\r\ny=2\r\n"},
    {"new key after comments", u"[Task]\r\n;x=1\r\n\r\n", u"[Task]\r\n;x=1\r\nKey=new\r\n"},
    {"new key in the first of two sections", u"[Task]\r\n[Task]\r\nKey=1\r\n",
     u"[Task]\r\nKey=new\r\n[Task]\r\nKey=1\r\n"},
    {"existing key, case aside", u"[TASK]\r\nKEY=old\r\n", u"[TASK]\r\nKEY=new\r\n"},
    {"existing key with blanks", u"[Task] ; c\r\n Key = old \r\nx = 1\r\n", u"[Task]\r\nKey=new\r\nx=1\r\n"},
    {"existing key with quotes", u"[Task]\r\nKey=\"old\"\r\n", u"[Task]\r\nKey=new\r\n"},
    {"first of two keys", u"[Task]\r\nKey=1\r\nKey=2\r\n", u"[Task]\r\nKey=new\r\nKey=2\r\n"},
    {"a key without equals sign", u"[Task]\r\nKey\r\n", u"[Task]\r\nKey=new\r\n"},
    {"a comment is another key", u"[Task]\r\n; Key = old\r\n", u"[Task]\r\n; Key=old\r\nKey=new\r\n"},
    {"a key before any section", u"Key=1\r\n", u"Key=1\r\n[Task]\r\nKey=new\r\n"},
};

TEST(IniWrite, OneSettingChanges_AndTheFormOfTheOtherLines)
{
    for (const WriteCase& row : kCases) {
        const std::u16string after = SetIniValue(row.before, u"Task", u"Key", u"new");
        EXPECT_EQ(after, row.after) << row.label;
        EXPECT_EQ(ReadIniValue(after, u"Task", u"Key"), u"new") << row.label;
    }
}

TEST(IniWrite, AValueThatTheTextHasAlready_LeavesTheTextAsItIs)
{
    for (const std::u16string_view text : {u"\n\n[Task] x\n Key = new \n\n", u"; c = 1\r\n[task]\rKEY=new"}) {
        EXPECT_EQ(SetIniValue(text, u"Task", u"Key", u"new"), text);
        EXPECT_EQ(SetIniValue(text, u" Task ", u" Key ", u" new"), text);
        EXPECT_NE(SetIniValue(text, u"Task", u"Key", u"new "), text);
    }
}

TEST(IniWrite, Values_AreWrittenUnchangedWithoutTheBlanksBeforeThem)
{
    for (const std::u16string_view value :
         {u"", u"plain", u"a b", u"a ", u"\"a\"", u"'a'", u"\"", u"[Other]", u";x", u"a=b;c]d[e", u"\u00A0a\u3000"}) {
        const std::u16string expected = u"[S]\r\nk=" + std::u16string(value) + u"\r\n";
        EXPECT_EQ(SetIniValue(u"", u"S", u"k", value), expected);
        EXPECT_EQ(SetIniValue(u"", u"S", u"k", u" \t\x1A" + std::u16string(value)), expected);
    }
}

TEST(IniWrite, Names_AreWrittenUnchangedWithoutTheBlanksBeforeThem)
{
    EXPECT_EQ(SetIniValue(u"", u" S]x=; ", u" [k]=; ", u"v"), u"[S]x=; ]\r\n[k]=; =v\r\n");
    EXPECT_EQ(SetIniValue(u"[S]\r\n", u"", u"", u"v"), u"=v\r\n[S]\r\n");
}

TEST(IniWrite, LargeValue_ReadsBackWhole)
{
    const std::u16string value(65536, u'x');
    EXPECT_EQ(ReadIniValue(SetIniValue(u"", u"S", u"k", value), u"S", u"k"), value);
}

}  // namespace
}  // namespace zupm
