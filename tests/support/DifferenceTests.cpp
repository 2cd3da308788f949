#include <gtest/gtest.h>

#include "tests/support/Difference.h"

namespace zupm::test {
namespace {

using namespace std::string_view_literals;

struct Row {
    const char* label;
    std::string_view before;
    std::string_view after;
    std::string_view difference;
};

constexpr Row kRows[] = {
    {"equal texts", "a\nb\n", "a\nb\n", ""},
    {"both empty", "", "", ""},
    {"a changed line", "a\nb\nc\n", "a\nx\nc\n", "- b\n+ x\n"},
    {"a new line in the middle", "a\nc\n", "a\nb\nc\n", "+ b\n"},
    {"a removed line", "a\nb\nc\n", "a\nc\n", "- b\n"},
    {"a line among its likes", "x\nx\nx\n", "x\nx\n", "- x\n"},
    {"two distant changes", "a\nb\nc\nd\ne\n", "a\nB\nc\nD\ne\n", "- b\n+ B\n- d\n+ D\n"},
    {"a line that moved", "a\nb\nc\n", "b\nc\na\n", "- a\n+ a\n"},
    {"line ends alone", "a\r\nb\r\n", "a\nb\r\n", "- a\\r\n+ a\n"},
    {"a lost last line end", "a\nb\n", "a\nb", "- b\n+ b\\(no line end)\n"},
    {"a new block between its likes", "{\na\n}\n{\nb\n}\n", "{\na\n}\n{\nn\n}\n{\nb\n}\n", "+ n\n+ }\n+ {\n"},
    {"everything new", "", "a\n", "+ a\n"},
    {"control characters", "", "a\tb\x01\0\n"sv, "+ a\\tb\\x01\\x00\n"},
};

TEST(Difference, ShowsTheLinesThatWentAndCame)
{
    for (const Row& row : kRows) {
        EXPECT_EQ(Difference(row.before, row.after), row.difference) << row.label;
    }
}

TEST(Difference, OfWideTextsIsShownAsUtf8)
{
    EXPECT_EQ(Difference(u"\u00E4\n", u"\U0001F600\n"), "- \xC3\xA4\n+ \xF0\x9F\x98\x80\n");
}

}  // namespace
}  // namespace zupm::test
