// Texts between a client and the component: every kind of Unicode, and what is refused.
#include <functional>

#include "ClientTest.h"

namespace zupm::test {
namespace {

using namespace std::literals;
using ClientTexts = ClientTest;

constexpr std::string_view kTexts[] = {
    "plain ASCII",
    "Gr\u00FC\u00DFe \u00E4\u00F6\u00FC",
    "\u5B9A\u671F\u66F4\u65B0",
    "\U0001F5D3 \U0001F680",
    "\u0627\u0644\u0639\u0631\u0628\u064A\u0629 \u05E2\u05D1\u05E8\u05D9\u05EA",
    "e\u0301 \u0928\u093F \uAC00",
    "\u200B\u202E\uFEFF",
    "\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFD\U00010000\U0010FFFF",
    "a\tb\nc\rd",
    " blanks ",
    "<&>\"']]>",
    "",
};

TEST_F(ClientTexts, EveryCharacter_GoesThereAndBack)
{
    std::string all;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (!client::IsSurrogate(character)) {
            client::AppendUtf8(all, character);
        }
    }
    const client::Argument argument(all);
    ASSERT_EQ(SysStringLen(argument), 0x10000u - 0x800u + 2 * 0x100000u);
    EXPECT_EQ(Utf16(all), TextOf(argument));
    EXPECT_EQ(client::ToText(Bstr(TextOf(argument))), all);
}

TEST_F(ClientTexts, NamesAndValues_KeepEveryKindOfText)
{
    const PolicyFile file = Open();
    for (const std::string_view text : kTexts) {
        const std::string id = "id " + std::string(text);
        file.CreatePolicy(id).Set(text, text, text).HandBack();
        file.CreateTask(id, text).SetDisplayName(text).Set(text, text, text).HandBack();
    }
    file.Save();
    const PolicyFile again = Open();
    for (const std::string_view text : kTexts) {
        const std::string id = "id " + std::string(text);
        const Policy policy = again.Policy(id);
        EXPECT_EQ(policy.SoftwareId(), id);
        EXPECT_EQ(policy.SectionNames(), Texts{std::string(text)});
        EXPECT_EQ((*policy.Section(text).begin()).Name(), text);
        EXPECT_EQ(policy.Value(text, text), text);
        EXPECT_EQ(policy.Stored(text, text), text);
        EXPECT_EQ(again.TaskIds(id), Texts{std::string(text)});
        EXPECT_EQ(again.Task(id, text).DisplayName(), text);
        EXPECT_EQ(again.Task(id, text).Value(text, text), text);
    }
}

TEST_F(ClientTexts, FileNames_MayHoldEveryKindOfText)
{
    for (const std::string_view name : {"Gr\u00FC\u00DFe.xml"sv, "\u5171\u6709 \U0001F5D3.xml"sv, "e\u0301.xml"sv}) {
        const std::string path = PathOf(Utf16(name));
        Open().SaveAs(path);
        EXPECT_EQ(PolicyFile::Open(path).Path(), path);
        EXPECT_TRUE(m_folder.Has(Utf16(name))) << name;
    }
}

struct InvalidRow {
    std::string_view text;
    std::size_t at;
};

constexpr InvalidRow kInvalid[] = {
    {"\x80"sv, 0},
    {"a\xBF"sv, 1},
    {"ab\xC0\x80"sv, 2},
    {"\xC1\xBF"sv, 0},
    {"\xC3"sv, 0},
    {"\xC3("sv, 0},
    {"\xE0\x9F\xBF"sv, 0},
    {"\xE2\x82"sv, 0},
    {"\xE2\x82x"sv, 0},
    {"\xED\xA0\x80"sv, 0},
    {"\xED\xBF\xBF"sv, 0},
    {"\xF0\x8F\xBF\xBF"sv, 0},
    {"\xF0\x9F\x97"sv, 0},
    {"\xF4\x90\x80\x80"sv, 0},
    {"\xF5\x80\x80\x80"sv, 0},
    {"\u00FC\xFF"sv, 2},
};

TEST_F(ClientTexts, BytesThatAreNoUtf8_AreRefusedWithTheirPlace)
{
    for (const InvalidRow& row : kInvalid) {
        const auto error = Thrown<InvalidText>([&] { const client::Argument refused(row.text); });
        EXPECT_EQ(error.Sentence(), "A text is not valid UTF-8 at byte " + std::to_string(row.at) + ".");
        EXPECT_EQ(error.Code(), result::NotValidInItsEncoding);
        EXPECT_EQ(error.Line(), 0u);
    }
}

TEST_F(ClientTexts, EveryArgument_IsCheckedBeforeAnythingChanges)
{
    constexpr std::string_view kBad = "\xFF";
    const PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    Task task = file.Task("Scanner", "Daily");
    const std::function<void()> calls[] = {
        [&] { static_cast<void>(PolicyFile::Open(kBad)); },
        [&] { static_cast<void>(Edit::Open(kBad)); },
        [&] { static_cast<void>(file.Policy(kBad)); },
        [&] { static_cast<void>(file.FindPolicy(kBad)); },
        [&] { static_cast<void>(file.Task("Scanner", kBad)); },
        [&] { static_cast<void>(file.TaskIds(kBad)); },
        [&] { static_cast<void>(file.CreatePolicy(kBad)); },
        [&] { static_cast<void>(file.CreateTask(kBad, "x")); },
        [&] { file.RemovePolicy(kBad); },
        [&] { file.RemoveTask(kBad, "Daily"); },
        [&] { file.SaveAs(kBad); },
        [&] { static_cast<void>(policy.Value("General", kBad)); },
        [&] { static_cast<void>(policy.Find(kBad, "Mode")); },
        [&] { static_cast<void>(policy.Stored("General", kBad)); },
        [&] { policy.Set("General", "Mode", kBad); },
        [&] { policy.Set("General", kBad, "x"); },
        [&] { policy.Set(kBad, "Mode", "x"); },
        [&] { policy.Remove(kBad); },
        [&] { policy.Remove("General", kBad); },
        [&] { policy.SetSoftwareId(kBad); },
        [&] { static_cast<void>(policy.Section(kBad).Names()); },
        [&] { task.SetDisplayName(kBad); },
        [&] { task.SetTaskId(kBad); },
        [&] { task.WriteIni(kBad); },
    };
    const std::string before = policy.Xml();
    for (const auto& call : calls) {
        EXPECT_THROW(call(), InvalidText) << &call - calls;
    }
    EXPECT_EQ(policy.Xml(), before);
    EXPECT_EQ(file.Text(), kSample);
    EXPECT_EQ(task.DisplayName(), "Daily scan");
}

TEST_F(ClientTexts, NullCharacter_StaysInFieldsAndIsRefusedInXmlAndInFileNames)
{
    constexpr std::string_view kNull = "a\0b"sv;
    const PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    Task task = file.Task("Scanner", "Daily");
    EXPECT_EQ(task.SetDisplayName(kNull).DisplayName(), kNull);
    EXPECT_EQ(Thrown<Error>([&] { task.HandBack(); }).Code(), result::Unexpected);
    EXPECT_EQ(Thrown<Error>([&] { policy.Set("General", "Mode", kNull); }).Code(), result::Unexpected);
    EXPECT_EQ(Thrown<Error>([&] { policy.Set("General", kNull, "x"); }).Code(), result::Unexpected);
    EXPECT_EQ(Thrown<Error>([&] { policy.SetSoftwareId(kNull); }).Code(), result::Unexpected);
    EXPECT_EQ(policy.Value("General", "Mode"), "full");
    EXPECT_FALSE(policy.Contains("General", kNull));
    EXPECT_FALSE(file.ContainsPolicy("Scanner\0x"sv));
    EXPECT_EQ(Thrown<FileError>([&] { static_cast<void>(PolicyFile::Open(Path() + "\0x"s)); }).Code(),
              result::InvalidName);
}

TEST_F(ClientTexts, LoneSurrogateOfTheComponent_IsRefused)
{
    const Task task = Open().Task("Scanner", "Daily");
    for (const std::u16string& text : {std::u16string{u'a', 0xD800}, std::u16string{u'a', 0xDC00, 0xD800},
                                       std::u16string{u'a', 0xD800, 0xD800, 0xDC00}}) {
        ASSERT_EQ(task.Get()->put_DisplayName(Bstr(text).Get()), 0);
        EXPECT_EQ(Thrown<InvalidText>([&] { static_cast<void>(task.DisplayName()); }).Sentence(),
                  "A text of the component holds a lone surrogate at unit 1.");
    }
}

TEST_F(ClientTexts, LoneSurrogateInAMessage_IsReplaced)
{
    Task task = Open().Task("Scanner", "Daily");
    ASSERT_EQ(task.Get()->put_TaskID(Bstr(std::u16string{u'a', 0xD800}).Get()), 0);
    EXPECT_EQ(Thrown<Error>([&] { task.HandBack(); }).Subject(), Path() + ": task Scanner a\uFFFD");
}

}  // namespace
}  // namespace zupm::test
