#include <gtest/gtest.h>

#include "text/IniText.h"

namespace zupm {
namespace {

struct ReadCase {
    const char* label;
    std::u16string_view text;
    std::optional<std::u16string_view> value;
};

// Every row reads key "Key" of section "Task".
constexpr ReadCase kCases[] = {
    {"plain", u"[Task]\r\nKey=value\r\n", u"value"},
    {"no line end", u"[Task]\r\nKey=value", u"value"},
    {"line feeds", u"[Task]\nKey=value\n", u"value"},
    {"carriage returns", u"[Task]\rKey=value\r", u"value"},
    {"empty value", u"[Task]\r\nKey=\r\n", u""},
    {"blanks around", u"[Task]\r\n  Key \t=  \tvalue \t\r\n", u"value"},
    {"case of section and key", u"[TASK]\r\nkEY=value\r\n", u"value"},
    {"double quotes", u"[Task]\r\nKey=\" value \"\r\n", u" value "},
    {"single quotes", u"[Task]\r\nKey=' value '\r\n", u" value "},
    {"one pair only", u"[Task]\r\nKey=\"\"value\"\"\r\n", u"\"value\""},
    {"a quote alone", u"[Task]\r\nKey=\"\r\n", u"\""},
    {"quotes that differ", u"[Task]\r\nKey=\"value'\r\n", u"\"value'"},
    {"empty quotes", u"[Task]\r\nKey=\"\"\r\n", u""},
    {"equals signs in the value", u"[Task]\r\nKey=a=b=c\r\n", u"a=b=c"},
    {"semicolon in the value", u"[Task]\r\nKey=a;b\r\n", u"a;b"},
    {"bracket as value", u"[Task]\r\nKey=[Other]\r\n", u"[Other]"},
    {"first of two keys", u"[Task]\r\nKey=1\r\nKey=2\r\n", u"1"},
    {"first of two sections", u"[Task]\r\nOther=1\r\n[Task]\r\nKey=2\r\n", std::nullopt},
    {"after another section", u"[Other]\r\nKey=1\r\n[Task]\r\nKey=2\r\n", u"2"},
    {"in another section", u"[Other]\r\nKey=1\r\n[Task]\r\n", std::nullopt},
    {"before any section", u"Key=1\r\n", std::nullopt},
    {"a comment", u"[Task]\r\n;Key=1\r\n", std::nullopt},
    {"no equals sign", u"[Task]\r\nKey\r\n", std::nullopt},
    {"blanks before the section", u"  [Task]\r\nKey=1\r\n", u"1"},
    {"blanks in the brackets", u"[ Task ]\r\nKey=1\r\n", u"1"},
    {"text after the bracket", u"[Task] ; ours\r\nKey=1\r\n", u"1"},
    {"a bracket that is not closed", u"[Task\r\nKey=1\r\n", std::nullopt},
    {"a longer key", u"[Task]\r\nKey2=1\r\n", std::nullopt},
    {"empty text", u"", std::nullopt},
};

TEST(IniRead, Values_AreFoundTrimmedAndUnquoted)
{
    for (const ReadCase& row : kCases) {
        EXPECT_EQ(ReadIniValue(row.text, u"Task", u"Key"), row.value) << row.label;
    }
}

}  // namespace
}  // namespace zupm
