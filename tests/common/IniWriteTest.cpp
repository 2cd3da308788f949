#include <gtest/gtest.h>

#include <string>

#include "platform/common/IniText.h"

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
    {"new section behind the last line", u"[A]\r\nx=1\r\n", u"[A]\r\nx=1\r\n[Task]\r\nKey=new\r\n"},
    {"new section, no last line end", u"[A]\r\nx=1", u"[A]\r\nx=1\r\n[Task]\r\nKey=new\r\n"},
    {"new section behind blank lines", u"[A]\r\n\r\n\r\n", u"[A]\r\n\r\n\r\n[Task]\r\nKey=new\r\n"},
    {"new section, text before any section", u"stray", u"stray\r\n[Task]\r\nKey=new\r\n"},
    {"new section in a file of line feeds", u"[A]\nx=1\n", u"[A]\nx=1\n[Task]\r\nKey=new\r\n"},
    {"new key", u"[Task]\r\nx=1\r\n", u"[Task]\r\nx=1\r\nKey=new\r\n"},
    {"new key in an empty section", u"[Task]\r\n", u"[Task]\r\nKey=new\r\n"},
    {"new key, header without line end", u"[Task]", u"[Task]\r\nKey=new\r\n"},
    {"new key, last line without line end", u"[Task]\r\nx=1", u"[Task]\r\nx=1\r\nKey=new\r\n"},
    {"new key before the next section", u"[Task]\r\nx=1\r\n[B]\r\ny=2\r\n",
     u"[Task]\r\nx=1\r\nKey=new\r\n[B]\r\ny=2\r\n"},
    {"new key before blank lines", u"[Task]\r\nx=1\r\n\r\n[B]\r\n", u"[Task]\r\nx=1\r\nKey=new\r\n\r\n[B]\r\n"},
    {"new key behind comments", u"[Task]\r\n;x=1\r\n\r\n", u"[Task]\r\n;x=1\r\nKey=new\r\n\r\n"},
    {"new key in the first of two sections", u"[Task]\r\n[Task]\r\nKey=1\r\n",
     u"[Task]\r\nKey=new\r\n[Task]\r\nKey=1\r\n"},
    {"existing key", u"[Task]\r\nKey=old\r\n", u"[Task]\r\nKey=new\r\n"},
    {"existing key, case aside", u"[TASK]\r\nKEY=old\r\n", u"[TASK]\r\nKEY=new\r\n"},
    {"existing key without line end", u"[Task]\r\nKey=old", u"[Task]\r\nKey=new"},
    {"existing key of line feeds", u"[Task]\nKey=old\nx=1\n", u"[Task]\nKey=new\nx=1\n"},
    {"existing key with blanks", u"[Task]\r\n Key = old \r\nx=1\r\n", u"[Task]\r\n Key = new\r\nx=1\r\n"},
    {"existing key without value", u"[Task]\r\nKey=\r\n", u"[Task]\r\nKey=new\r\n"},
    {"existing key with quotes", u"[Task]\r\nKey=\"old\"\r\n", u"[Task]\r\nKey=new\r\n"},
    {"first of two keys", u"[Task]\r\nKey=1\r\nKey=2\r\n", u"[Task]\r\nKey=new\r\nKey=2\r\n"},
    {"a key without equals sign is none", u"[Task]\r\nKey\r\n", u"[Task]\r\nKey\r\nKey=new\r\n"},
    {"a comment is no key", u"[Task]\r\n;Key=old\r\n", u"[Task]\r\n;Key=old\r\nKey=new\r\n"},
    {"another section's key", u"[A]\r\nKey=1\r\n", u"[A]\r\nKey=1\r\n[Task]\r\nKey=new\r\n"},
    {"a key before any section", u"Key=1\r\n", u"Key=1\r\n[Task]\r\nKey=new\r\n"},
    {"everything else stays", u"\u00E9 junk\n\n[A] ; c\r\n = \r[Task]\rKey=1\r\r\n#x\n",
     u"\u00E9 junk\n\n[A] ; c\r\n = \r[Task]\rKey=new\r\r\n#x\n"},
};

TEST(IniWrite, OneSettingChanges_AndNothingElse)
{
    for (const WriteCase& row : kCases) {
        const auto after = SetIniValue(row.before, u"Task", u"Key", u"new");
        ASSERT_TRUE(after.has_value()) << row.label;
        EXPECT_EQ(*after, row.after) << row.label;
        EXPECT_EQ(ReadIniValue(*after, u"Task", u"Key"), u"new") << row.label;
        EXPECT_EQ(SetIniValue(*after, u"Task", u"Key", u"new"), after) << row.label << ", written again";
    }
}

struct ValueCase {
    std::u16string_view value;
    std::u16string_view written;
};

constexpr ValueCase kValues[] = {
    {u"", u""},
    {u"plain", u"plain"},
    {u" ", u"\" \""},
    {u" a", u"\" a\""},
    {u"a\t", u"\"a\t\""},
    {u"a b", u"a b"},
    {u"\"", u"\""},
    {u"\"\"", u"\"\"\"\""},
    {u"\"a\"", u"\"\"a\"\""},
    {u"'a'", u"\"'a'\""},
    {u"\"a'", u"\"a'"},
    {u" \"a\" ", u"\" \"a\" \""},
    {u"\u00A0a", u"\"\u00A0a\""},
    {u"a\u3000", u"\"a\u3000\""},
    {u"a\u001A", u"\"a\u001A\""},
    {u"[Other]", u"[Other]"},
    {u";x", u";x"},
    {u"=", u"="},
    {u"a=b;c]d[e", u"a=b;c]d[e"},
    {u"\U0001F600", u"\U0001F600"},
};

TEST(IniWrite, Values_ReadBackAsTheyWere)
{
    for (const ValueCase& row : kValues) {
        const auto text = SetIniValue(u"", u"S", u"k", row.value);
        ASSERT_TRUE(text.has_value());
        EXPECT_EQ(*text, std::u16string(u"[S]\r\nk=").append(row.written).append(u"\r\n"));
        EXPECT_EQ(ReadIniValue(*text, u"S", u"k"), row.value);
    }
}

TEST(IniWrite, LargeValue_ReadsBackWhole)
{
    const std::u16string value(65536, u'x');
    EXPECT_EQ(ReadIniValue(SetIniValue(u"", u"S", u"k", value).value(), u"S", u"k"), value);
}

struct RefusedCase {
    const char* label;
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

constexpr char16_t kLoneHigh[] = {u'a', 0xD800, 0};
constexpr char16_t kLoneLow[] = {0xDC80, u'a', 0};

constexpr RefusedCase kRefused[] = {
    {"empty section", u"", u"k", u"v"},
    {"empty key", u"S", u"", u"v"},
    {"line feed in the value", u"S", u"k", u"v\n[Other]"},
    {"carriage return in the value", u"S", u"k", u"v\rx=1"},
    {"null in the value", u"S", u"k", {u"a\0b", 3}},
    {"line feed in the key", u"S", u"k\nx", u"v"},
    {"carriage return in the key", u"S", u"k\rx", u"v"},
    {"null in the key", u"S", {u"k\0", 2}, u"v"},
    {"line feed in the section", u"S\nx", u"k", u"v"},
    {"null in the section", {u"\0S", 2}, u"k", u"v"},
    {"bracket in the section", u"S]x", u"k", u"v"},
    {"equals sign in the key", u"S", u"k=x", u"v"},
    {"key like a comment", u"S", u";k", u"v"},
    {"key like a section", u"S", u"[k", u"v"},
    {"blank before the key", u"S", u" k", u"v"},
    {"blank behind the key", u"S", u"k\t", u"v"},
    {"wide blank behind the key", u"S", u"k\u3000", u"v"},
    {"blank before the section", u" S", u"k", u"v"},
    {"blank behind the section", u"S ", u"k", u"v"},
    {"unpaired surrogate in the value", u"S", u"k", kLoneHigh},
    {"unpaired surrogate in the key", u"S", kLoneLow, u"v"},
    {"unpaired surrogate in the section", kLoneLow, u"k", u"v"},
};

TEST(IniWrite, WhatCannotBeReadBack_IsRefused)
{
    for (const RefusedCase& row : kRefused) {
        EXPECT_FALSE(WhyIniRefuses(row.section, row.key, row.value).empty()) << row.label;
        EXPECT_EQ(SetIniValue(u"[S]\r\nk=1\r\n", row.section, row.key, row.value), std::nullopt) << row.label;
    }
}

TEST(IniWrite, UnusualButHarmlessNames_AreWritten)
{
    for (const std::u16string_view section : {u"[", u"=", u";", u"a b", u"\u00E9"}) {
        for (const std::u16string_view key : {u"]", u"#", u"a;b", u"a b", u"\"", u"k[0]"}) {
            const auto text = SetIniValue(u"", section, key, u"v");
            ASSERT_TRUE(text.has_value());
            EXPECT_EQ(ReadIniValue(*text, section, key), u"v");
        }
    }
}

}  // namespace
}  // namespace zupm
