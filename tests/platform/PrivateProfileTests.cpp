#include "common/PrivateProfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <barrier>
#include <filesystem>
#include <thread>

#include "common/CzuLogger.h"
#include "tests/platform/TestFolder.h"
#include "text/Decimal.h"
#include "text/IniText.h"
#include "text/Utf.h"

namespace zupm::test {
namespace {

class PrivateProfile : public testing::Test {
protected:
    PrivateProfile()
    {
        CzuLogger::SetSink([this](const LogMessage& message) {
            EXPECT_EQ(message.level, kLogFailure);
            m_log.push_back(ToUtf8Lossy(message.text));
        });
    }
    ~PrivateProfile() override { CzuLogger::SetSink({}); }

    [[nodiscard]] bool Write(std::u16string_view section, std::u16string_view key, std::u16string_view value) const
    {
        return WritePrivateProfileStringW(section, key, value, m_folder.Wide("file.ini"));
    }

    TestFolder m_folder;
    std::vector<std::string> m_log;
};

TEST_F(PrivateProfile, MissingFile_IsCreated)
{
    EXPECT_TRUE(Write(u"Task", u"TaskName", u"B\u00FCro \U0001F600"));
    EXPECT_TRUE(Write(u"Task", u"TaskPriority", u"-7"));
    EXPECT_TRUE(Write(u"General", u"x", u""));
    EXPECT_EQ(m_folder.Read("file.ini"),
              "[Task]\r\nTaskName=B\xC3\xBCro \xF0\x9F\x98\x80\r\nTaskPriority=-7\r\n[General]\r\nx=\r\n");
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file.ini"});
    EXPECT_TRUE(m_log.empty());
}

TEST_F(PrivateProfile, NamesWithOtherLettersInAnotherCase_AreTwoNames)
{
    EXPECT_NE(ProfileName(u"\u00C4"), ProfileName(u"\u00E4"));
    EXPECT_TRUE(Write(u"S", u"\u00C4", u"1"));
    EXPECT_TRUE(Write(u"S", u"\u00E4", u"2"));
    EXPECT_EQ(m_folder.Read("file.ini"), "[S]\r\n\xC3\x84=1\r\n\xC3\xA4=2\r\n");
}

/// UTF-16 LE with its signature.
std::string Wide(std::u16string_view text)
{
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

struct EncodingCase {
    const char* label;
    std::string before;
    std::string after;
};

TEST_F(PrivateProfile, Encodings_StayAndNoByteIsLost)
{
    const EncodingCase cases[] = {
        {"UTF-8 with signature", "\xEF\xBB\xBF[S]\r\nk=\xC3\xA4\r\n", "\xEF\xBB\xBF[S]\r\nk=\xC3\xB6\r\n"},
        {"signature alone", "\xEF\xBB\xBF", "\xEF\xBB\xBF[S]\r\nk=\xC3\xB6\r\n"},
        {"UTF-16", Wide(u"[S]\r\nk=\u00E4\r\n"), Wide(u"[S]\r\nk=\u00F6\r\n")},
        {"UTF-16, empty", Wide(u""), Wide(u"[S]\r\nk=\u00F6\r\n")},
        {"UTF-16 with an unpaired surrogate", Wide(std::u16string{u'x', 0xD800}),
         Wide(std::u16string{u'x', 0xD800} + u"\r\n[S]\r\nk=\u00F6\r\n")},
        {"another 8-bit code page", "[S]\r\nx=\xE4\xFF\x80\xC3\r\nk=1\r\n",
         "[S]\r\nx=\xE4\xFF\x80\xC3\r\nk=\xC3\xB6\r\n"},
        {"UTF-16, high bytes first", std::string("\xFE\xFF\0[\0S\0]", 8),
         std::string("\xFE\xFF\0[\0S\0]\0\r\0\n\0k\0=\0\xF6\0\r\0\n", 22)},
        {"half a unit at the end", Wide(u"[S]\r\n") + "x", Wide(u"[S]\r\nx\r\nk=\u00F6\r\n")},
    };
    for (const EncodingCase& row : cases) {
        m_folder.Write("file.ini", row.before);
        EXPECT_TRUE(Write(u"S", u"k", u"\u00F6")) << row.label;
        EXPECT_EQ(m_folder.Read("file.ini"), row.after) << row.label;
    }
    EXPECT_TRUE(m_log.empty());
}

TEST_F(PrivateProfile, AnUnpairedSurrogate_TurnsTheFileIntoUtf16)
{
    const std::u16string lone{u'v', 0xDC80};
    m_folder.Write("file.ini", "[S]\r\nx=\xC3\xA4\r\n");
    EXPECT_TRUE(Write(u"S", u"k", lone));
    EXPECT_EQ(m_folder.Read("file.ini"), Wide(u"[S]\r\nx=\u00E4\r\nk=" + lone + u"\r\n"));
    m_folder.Write("file.ini", "[S]\r\nx=\xFF\r\n");
    EXPECT_FALSE(Write(u"S", u"k", lone));
    EXPECT_EQ(m_folder.Read("file.ini"), "[S]\r\nx=\xFF\r\n");
    EXPECT_TRUE(m_log.empty());
}

TEST_F(PrivateProfile, BlanksThatKeepBytesFromBeingASignature_AreNotRemoved)
{
    for (const std::string_view before : {"\f\xFF\xFE[S]\r\n", " \xFE\xFF", "\t\xEF\xBB\xBF[S]\r\n"}) {
        m_folder.Write("file.ini", before);
        EXPECT_FALSE(Write(u"S", u"k", u"v"));
        EXPECT_EQ(m_folder.Read("file.ini"), before);
    }
    EXPECT_TRUE(m_log.empty());
}

TEST_F(PrivateProfile, ALineBreakOrNull_IsRefusedWithALogLineAndTheFileStays)
{
    m_folder.Write("file.ini", "[S]\r\nk=1\r\n");
    const std::u16string null(1, u'\0');
    for (const std::u16string& text : {u"2\r\n[Injected]\r\nx=1" + std::u16string(), std::u16string(u"a\r"),
                                       std::u16string(u"\na"), null, u"a" + null}) {
        EXPECT_FALSE(Write(text, u"k", u"2"));
        EXPECT_FALSE(Write(u"S", text, u"2"));
        EXPECT_FALSE(Write(u"S", u"k", text));
        constexpr std::string_view kLine =
            "WritePrivateProfileStringW() - setting refused: a line break or null character in its ";
        const std::string line(kLine);
        EXPECT_EQ(m_log, (std::vector<std::string>{line + "section", line + "key", line + "value"}));
        m_log.clear();
    }
    EXPECT_EQ(m_folder.Read("file.ini"), "[S]\r\nk=1\r\n");
}

TEST_F(PrivateProfile, AValueThatTheFileHasAlready_LeavesTheFileUntouched)
{
    m_folder.Write("file.ini", "\n[S]\n k = 1\n");
    ASSERT_EQ(::chmod(m_folder.Path("file.ini").c_str(), 0444), 0);
    EXPECT_TRUE(Write(u"s", u"K", u"1"));
    EXPECT_EQ(m_folder.Read("file.ini"), "\n[S]\n k = 1\n");
}

TEST_F(PrivateProfile, AFileNameAlone_IsAFileOfTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path(""));
    EXPECT_TRUE(WritePrivateProfileStringW(u"S", u"k", u"v", u"bare.ini"));
    std::filesystem::current_path(before);
    EXPECT_EQ(m_folder.Read("bare.ini"), "[S]\r\nk=v\r\n");
}

TEST_F(PrivateProfile, RefusedSetting_CreatesNoFile)
{
    EXPECT_FALSE(Write(u"S", u"k", u"a\nb"));
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{});
}

TEST_F(PrivateProfile, PathsThatCannotBeWritten_GiveFalseWithoutALogLine)
{
    for (const std::u16string& path :
         {std::u16string(), m_folder.Wide(""), m_folder.Wide("none/file.ini"), std::u16string(u"/dev/null")}) {
        EXPECT_FALSE(WritePrivateProfileStringW(u"S", u"k", u"v", path));
    }
    EXPECT_TRUE(m_log.empty());
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{});
}

TEST_F(PrivateProfile, ModeAndLink_AreKept)
{
    m_folder.Write("target.ini", "[S]\r\n");
    ASSERT_EQ(::chmod(m_folder.Path("target.ini").c_str(), 0606), 0);
    ASSERT_EQ(::symlink("target.ini", m_folder.Path("file.ini").c_str()), 0);
    EXPECT_TRUE(Write(u"S", u"k", u"v"));
    EXPECT_TRUE(m_folder.IsLink("file.ini"));
    EXPECT_EQ(m_folder.Read("target.ini"), "[S]\r\nk=v\r\n");
    EXPECT_EQ(m_folder.Mode("target.ini"), mode_t{0606});
}

TEST_F(PrivateProfile, TwoThreads_LoseNoSettingOfOneAnother)
{
    constexpr std::u16string_view kPrefixes[] = {u"a", u"b"};
    constexpr std::uint64_t kKeys = 200;
    std::barrier start(std::ssize(kPrefixes));
    std::vector<std::thread> threads;
    for (const std::u16string_view prefix : kPrefixes) {
        threads.emplace_back([&start, this, prefix] {
            start.arrive_and_wait();
            for (std::uint64_t i = 0; i < kKeys; ++i) {
                EXPECT_TRUE(Write(u"S", std::u16string(prefix).append(FormatUnsigned(i)), prefix));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::u16string text = ToUtf16(m_folder.Read("file.ini")).value();
    for (const std::u16string_view prefix : kPrefixes) {
        for (std::uint64_t i = 0; i < kKeys; ++i) {
            ASSERT_EQ(ReadIniValue(text, u"S", std::u16string(prefix).append(FormatUnsigned(i))), prefix);
        }
    }
}

}  // namespace
}  // namespace zupm::test
