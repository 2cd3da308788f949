#include "comrt/RegistryText.h"

#include <gtest/gtest.h>

namespace zupm::runtime {
namespace {

std::string ValueAt(const RegistryText& registry, std::string_view key, std::string_view name)
{
    const std::string* value = registry.FindValue(key, name);
    return value == nullptr ? "(none)" : *value;
}

TEST(RegistryText, ReadsKeysDefaultsAndNamedValues)
{
    const auto registry = RegistryText::Parse(
        "[A\\B]\n"
        "@=\"default\"\n"
        "\n"
        "\"Name\"=\"value\"\n"
        "[C]\n");
    ASSERT_TRUE(registry);
    EXPECT_EQ(ValueAt(*registry, "A\\B", ""), "default");
    EXPECT_EQ(ValueAt(*registry, "a\\b", "NAME"), "value");
    EXPECT_EQ(ValueAt(*registry, "A", ""), "(none)");
    EXPECT_TRUE(registry->HasKey("A"));
    EXPECT_TRUE(registry->HasKey("C"));
    EXPECT_FALSE(registry->HasKey("B"));
}

TEST(RegistryText, AnEmptyTextIsAnEmptyRegistry)
{
    const auto registry = RegistryText::Parse("");
    ASSERT_TRUE(registry);
    EXPECT_EQ(registry->Serialise(), "");
}

TEST(RegistryText, AKeyNamedTwiceHasTheValuesOfBothPlaces)
{
    const auto registry = RegistryText::Parse("[A]\n\"1\"=\"x\"\n[B]\n[a]\n\"2\"=\"y\"\n");
    ASSERT_TRUE(registry);
    EXPECT_EQ(registry->Serialise(), "[A]\n\"1\"=\"x\"\n\"2\"=\"y\"\n[B]\n");
}

TEST(RegistryText, EverythingElseIsRefused)
{
    const char* const kBad[] = {
        "x\n",
        "[A]",
        "[A]\n@=\"x\"",
        "[A\n",
        "[]\n",
        "[\n",
        "A]\n",
        "[A]\r\n",
        " [A]\n",
        "[A] \n",
        "[\\A]\n",
        "[A\\]\n",
        "[A\\\\B]\n",
        "[A%]\n",
        "[A%4]\n",
        "[A%4G]\n",
        "[A%00]\n",
        "[A%80]\n",
        "[A\"]\n",
        "[A\tB]\n",
        "@=\"before any key\"\n",
        "\"n\"=\"before any key\"\n",
        "[A]\n@=x\n",
        "[A]\n@=\"x\n",
        "[A]\n@=\"\n",
        "[A]\n@\n",
        "[A]\n@ =\"x\"\n",
        "[A]\n@=\"x\" \n",
        "[A]\n@=\"a\"b\"\n",
        "[A]\n@=\"1\"\n@=\"2\"\n",
        "[A]\n\"n\"=\"1\"\n\"N\"=\"2\"\n",
        "[A]\n\"\"=\"x\"\n",
        "[A]\n\"n\"=x\n",
        "[A]\n\"n\"=\"\n",
        "[A]\n\"n=\"x\"\n",
        "[A]\nn\"=\"x\"\n",
        "[A]\n\"n\" = \"x\"\n",
        "[A]\n\"n\"\n",
        "[A]\n\"\n",
        "# a comment\n",
        "; a comment\n",
        "\xEF\xBB\xBF[A]\n",
    };
    for (const char* text : kBad) {
        EXPECT_FALSE(RegistryText::Parse(text)) << text;
    }
    EXPECT_FALSE(RegistryText::Parse(std::string_view("[A]\n@=\"\0\"\n", 9)));
    EXPECT_FALSE(RegistryText::Parse("[" + std::string(kLongestKey + 1, 'k') + "]\n"));
}

TEST(RegistryText, AnyCutShortTextIsRefusedOrEndsAtALine)
{
    const std::string whole = "[A\\B]\n@=\"default\"\n\"Name\"=\"value%0A\"\n";
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const bool atLineEnd = whole[size - 1] == '\n';
        EXPECT_EQ(RegistryText::Parse(whole.substr(0, size)).has_value(), atLineEnd) << size;
    }
}

TEST(RegistryText, OddNamesAndValuesAreReadBack)
{
    const char* const kOdd[] = {
        "plain",
        "a\"b",
        "\"=\"",
        "back/slash",
        "line\nbreak",
        "\r\n",
        "[bracket]",
        "]",
        "[",
        "@",
        "%41",
        "100%",
        "\t tab",
        " blanks ",
        "Gr\xC3\xB6\xC3\x9Fter",
        "=",
        "@=\"x\"\n[Z]",
        "\x7F\x01\x1F",
        "\xF0\x9F\x98\x80",
        "\"",
        "a]\n[b",
        "%",
    };
    RegistryText registry;
    for (const char* odd : kOdd) {
        ASSERT_EQ(registry.SetValue(std::string("Key\\") + odd, odd, odd), result::Success) << odd;
        ASSERT_EQ(registry.SetValue("All", odd, odd), result::Success) << odd;
    }
    const std::string text = registry.Serialise();
    const auto read = RegistryText::Parse(text);
    ASSERT_TRUE(read) << text;
    for (const char* odd : kOdd) {
        EXPECT_EQ(ValueAt(*read, std::string("Key\\") + odd, odd), odd);
        EXPECT_EQ(ValueAt(*read, "All", odd), odd);
    }
    EXPECT_EQ(read->Serialise(), text);
}

TEST(RegistryText, EmptyValuesAndBackslashesInNamesAndValuesAreReadBack)
{
    RegistryText registry;
    ASSERT_EQ(registry.SetValue("K", "C:\\a\\", "C:\\b\\"), result::Success);
    ASSERT_EQ(registry.SetValue("K", "", ""), result::Success);
    EXPECT_EQ(registry.Serialise(), "[K]\n@=\"\"\n\"C:\\a\\\"=\"C:\\b\\\"\n");
    const auto read = RegistryText::Parse(registry.Serialise());
    ASSERT_TRUE(read);
    EXPECT_EQ(ValueAt(*read, "K", "C:\\a\\"), "C:\\b\\");
    EXPECT_EQ(ValueAt(*read, "K", ""), "");
}

TEST(RegistryText, CreateKey_MakesTheKeysAboveIt)
{
    RegistryText registry;
    ASSERT_EQ(registry.CreateKey("A\\B\\C"), result::Success);
    EXPECT_EQ(registry.Serialise(), "[A]\n[A\\B]\n[A\\B\\C]\n");
}

TEST(RegistryText, CreateKey_KeepsTheFirstSpellingAndTheValues)
{
    RegistryText registry;
    ASSERT_EQ(registry.SetValue("Key", "Name", "1"), result::Success);
    ASSERT_EQ(registry.CreateKey("KEY"), result::Success);
    ASSERT_EQ(registry.SetValue("kEY", "nAME", "2"), result::Success);
    EXPECT_EQ(registry.Serialise(), "[Key]\n\"Name\"=\"2\"\n");
}

TEST(RegistryText, ChangesWithBadNamesAreRefusedAndChangeNothing)
{
    RegistryText registry;
    for (const std::string& key : {std::string(), std::string("\\"), std::string("A\\"), std::string("\\A"),
                                   std::string("A\\\\B"), std::string("A\0B", 3)}) {
        EXPECT_EQ(registry.CreateKey(key), result::InvalidName);
        EXPECT_EQ(registry.SetValue(key, "n", "v"), result::InvalidName);
    }
    EXPECT_EQ(registry.CreateKey(std::string(kLongestKey + 1, 'k')), result::NameTooLong);
    EXPECT_EQ(registry.SetValue("K", std::string("\0", 1), "v"), result::InvalidName);
    EXPECT_EQ(registry.SetValue("K", "n", std::string("\0", 1)), result::InvalidName);
    EXPECT_EQ(registry.Serialise(), "");
}

TEST(RegistryText, TheLongestKeyIsTaken)
{
    RegistryText registry;
    EXPECT_EQ(registry.CreateKey(std::string(kLongestKey, 'k')), result::Success);
    EXPECT_TRUE(RegistryText::Parse(registry.Serialise()));
}

TEST(RegistryText, DeleteTree_RemovesTheKeyAndTheKeysBelowItAndNoOthers)
{
    RegistryText registry;
    for (const char* key : {"A", "A!", "A!\\x", "A\\B", "A\\B\\C", "A\\b2", "AB", "A]", "a~", "B\\A"}) {
        ASSERT_EQ(registry.CreateKey(key), result::Success);
    }
    registry.DeleteTree("a");
    EXPECT_EQ(registry.Serialise(), "[A!]\n[A!\\x]\n[A]]\n[AB]\n[a~]\n[B]\n[B\\A]\n");
    registry.DeleteTree("B\\A");
    EXPECT_TRUE(registry.HasKey("B"));
    registry.DeleteTree("missing");
    registry.DeleteTree("");
    EXPECT_TRUE(registry.HasKey("B"));
}

}  // namespace
}  // namespace zupm::runtime
