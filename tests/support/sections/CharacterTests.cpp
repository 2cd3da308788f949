// Texts at the edges: null and empty ones, characters that XML cannot hold, characters that it can.
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

struct TextRow {
    const char* label;
    std::u16string_view text;
};

// A literal cannot hold lone surrogates.
constexpr char16_t kHigh[] = {u'a', 0xD83D, u'b', 0};
constexpr char16_t kLow[] = {u'a', 0xDE00, u'b', 0};
constexpr char16_t kSwapped[] = {0xDE00, 0xD83D, 0};
constexpr char16_t kHighAtTheEnd[] = {u'a', 0xD83D, 0};

constexpr TextRow kRefused[] = {
    {"embedded null", u"a\0b"sv},
    {"only a null", u"\0"sv},
    {"U+0001", u"a\u0001"sv},
    {"U+0008", u"\u0008"sv},
    {"U+000B", u"\u000B"sv},
    {"U+001F", u"\u001F"sv},
    {"U+FFFE", u"a\uFFFE"sv},
    {"U+FFFF", u"\uFFFF"sv},
    {"lone high surrogate", kHigh},
    {"lone low surrogate", kLow},
    {"surrogates in the wrong order", kSwapped},
    {"high surrogate at the end", kHighAtTheEnd},
};

constexpr TextRow kKept[] = {
    {"empty", u""sv},
    {"markup", u"<a href=\"x\">'&amp;'</a>]]>"sv},
    {"blanks at the ends", u"  a  "sv},
    {"tab, LF, CR and CR LF", u"\ta\nb\rc\r\nd\n"sv},
    {"delete and C1 controls", u"\u007F\u0085\u009F"sv},
    {"line separators", u"\u2028\u2029"sv},
    {"last of the BMP, first of the private ones", u"\uFFFD\uE000\uD7FF"sv},
    {"outside the BMP", u"\U00010000\U0001F600\U0010FFFF"sv},
    {"combining characters stay apart", u"e\u0301\u00E9"sv},
    {"byte order mark", u"\uFEFFa"sv},
    {"a macro that nobody registered", u"<Macro>"sv},
};

}  // namespace

TEST_P(SectionTest, ACharacterThatXmlCannotHoldIsRefusedBeforeAnythingChanges)
{
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", u"old"), 0);
    const std::string before = Data();
    for (const TextRow& row : kRefused) {
        const Bstr bad(row.text);
        EXPECT_EQ(m_object->PutSectionSetting(u"A", u"x", bad), result::Unexpected) << row.label;
        EXPECT_EQ(m_object->Failure(), result::SentenceFor(result::Unexpected)) << row.label;
        EXPECT_EQ(m_object->PutSectionSetting(u"A", bad, u"new"), result::Unexpected) << row.label;
        EXPECT_EQ(m_object->PutSectionSetting(bad, u"x", u"new"), result::Unexpected) << row.label;
        EXPECT_EQ(m_object->PutSectionSetting(u"New", u"new", bad), result::Unexpected) << row.label;
        EXPECT_EQ(m_object->PutSectionSetting(u"New", bad, u"new"), result::Unexpected) << row.label;
        EXPECT_EQ(Data(), before) << row.label;
    }
    EXPECT_EQ(Get(u"A", u"x"), (Read{0, u"old"}));
    EXPECT_EQ(Get(u"New", u"new"), Failed(result::SectionNotFound));
}

TEST_P(SectionTest, PutSetting_WithACharacterThatXmlCannotHoldIsRefused)
{
    ASSERT_EQ(m_object->PutSection(u"A"), 0);
    for (const TextRow& row : kRefused) {
        EXPECT_EQ(m_object->PutSetting(u"x", row.text), result::Unexpected) << row.label;
        EXPECT_EQ(m_object->PutSetting(row.text, u"x"), result::Unexpected) << row.label;
    }
    EXPECT_EQ(GetCurrent(u"x"), Failed(result::SectionNotFound));
}

TEST_P(SectionTest, NamesThatXmlCannotHoldAreNeverFound)
{
    ASSERT_EQ(m_object->PutSectionSetting(u"a", u"a", u"1"), 0);
    for (const TextRow& row : kRefused) {
        EXPECT_EQ(Get(row.text, u"a"), Failed(result::SectionNotFound)) << row.label;
        EXPECT_EQ(Get(u"a", row.text), Failed(result::SettingNotFound)) << row.label;
        EXPECT_EQ(m_object->RemoveSetting(u"a", row.text), result::SettingNotFound) << row.label;
        EXPECT_EQ(m_object->RemoveSection(row.text), result::SectionNotFound) << row.label;
    }
    EXPECT_EQ(Get(u"a", u"a"), (Read{0, u"1"}));
}

TEST_P(SectionTest, EveryOtherTextIsKeptAsValueAndAsName)
{
    for (const TextRow& row : kKept) {
        const Bstr text(row.text);
        ASSERT_EQ(m_object->PutSectionSetting(u"value", text, text), 0) << row.label;
        ASSERT_EQ(m_object->PutSectionSetting(text, u"name", u"1"), 0) << row.label;
        EXPECT_EQ(Get(u"value", text), (Read{0, std::u16string(row.text)})) << row.label;
        EXPECT_EQ(Get(text, u"name"), (Read{0, u"1"})) << row.label;
    }
}

TEST_P(SectionTest, EveryOtherTextIsKeptThroughAFileAndBack)
{
    for (const TextRow& row : kKept) {
        ASSERT_EQ(m_object->PutSectionSetting(u"value", row.text, row.text), 0) << row.label;
        ASSERT_EQ(m_object->PutSectionSetting(row.text, u"name", u"1"), 0) << row.label;
    }
    PassThroughFile();
    for (const TextRow& row : kKept) {
        EXPECT_EQ(Get(u"value", row.text), (Read{0, std::u16string(row.text)})) << row.label;
        EXPECT_EQ(Get(row.text, u"name"), (Read{0, u"1"})) << row.label;
    }
}

TEST_P(SectionTest, ANullStringCountsAsTheEmptyOne)
{
    ASSERT_EQ(m_object->PutSectionSetting(Bstr(), Bstr(), Bstr()), 0);
    EXPECT_EQ(Get(u"", u""), (Read{0, u""}));
    ASSERT_EQ(m_object->PutSectionSetting(u"", u"", u"1"), 0);
    EXPECT_EQ(Get(Bstr(), Bstr()), (Read{0, u"1"}));
    ASSERT_EQ(m_object->PutSection(Bstr()), 0);
    EXPECT_EQ(GetCurrent(Bstr()), (Read{0, u"1"}));
    ASSERT_EQ(m_object->PutSetting(Bstr(), u"2"), 0);
    EXPECT_EQ(GetCurrent(u""), (Read{0, u"2"}));
    EXPECT_EQ(m_object->RemoveSetting(Bstr(), Bstr()), 0);
    EXPECT_EQ(m_object->RemoveSetting(Bstr(), Bstr()), result::SettingNotFound);
    EXPECT_EQ(m_object->RemoveSection(Bstr()), 0);
    EXPECT_EQ(m_object->RemoveSection(Bstr()), result::SectionNotFound);
}

TEST_P(SectionTest, AVeryLongValueIsReadWhole)
{
    std::u16string text(std::size_t{1} << 20, u'x');
    text[5] = u'<';
    text.back() = u'\u00E4';
    ASSERT_EQ(m_object->PutSectionSetting(u"A", u"x", text), 0);
    EXPECT_TRUE(Get(u"A", u"x") == (Read{0, text}));
    PassThroughFile();
    EXPECT_TRUE(Get(u"A", u"x") == (Read{0, text}));
}

}  // namespace zupm::test
