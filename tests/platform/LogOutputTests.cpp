#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>

#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

class LogOutput : public testing::Test {
protected:
    /// Runs the log writer in a shell; its standard error goes to the file "err".
    void Log(const std::string& variable, const std::string& arguments) const
    {
        const std::string command =
            "env -u ZUPOLICY_LOG " + variable + " " + m_writer + " " + arguments + " 2>>" + m_folder.Path("err");
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    [[nodiscard]] std::string ToFile(int level) const
    {
        return "ZUPOLICY_LOG=" + std::to_string(level) + ":" + m_folder.Path("log");
    }

    [[nodiscard]] std::vector<std::string> Lines(std::string_view name) const
    {
        std::istringstream text(m_folder.Read(name));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    TestFolder m_folder;
    std::string m_writer = ZUPM_LOG_WRITER;
};

TEST_F(LogOutput, Unset_WritesNothing)
{
    Log("", "1 text");
    Log("ZUPOLICY_LOG=", "1 text");
    Log("ZUPOLICY_LOG=0", "0 text");
    EXPECT_EQ(m_folder.Read("err"), "");
}

TEST_F(LogOutput, AValueInAnotherForm_IsReportedOnceAndNothingIsLogged)
{
    // Three messages, one report.
    Log("ZUPOLICY_LOG=off", "1 text 3");
    Log("ZUPOLICY_LOG=\"$(printf 'a\\033[1mb')\"", "1 text");
    EXPECT_EQ(m_folder.Read("err"),
              "zuPolicyManager: ZUPOLICY_LOG is not <level>[:<file>], so nothing is logged: off\n"
              "zuPolicyManager: ZUPOLICY_LOG is not <level>[:<file>], so nothing is logged: a\\x1B[1mb\n");
}

TEST_F(LogOutput, LevelAlone_WritesToStandardError)
{
    Log("ZUPOLICY_LOG=7", "7 'one two'");
    Log("ZUPOLICY_LOG=7", "8 three");
    const std::vector<std::string> lines = Lines("err");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(std::regex_match(lines[0], std::regex("[0-9]{14} 7 2048 one two"))) << lines[0];
}

TEST_F(LogOutput, LevelAndFile_AppendsToTheFile)
{
    m_folder.Write("log", "before\n");
    Log(ToFile(8), "1 one");
    Log(ToFile(8), "8 two");
    Log(ToFile(8), "9 three");
    const std::vector<std::string> lines = Lines("log");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "before");
    EXPECT_TRUE(lines[1].ends_with(" 1 2048 one"));
    EXPECT_TRUE(lines[2].ends_with(" 8 2048 two"));
    EXPECT_EQ(m_folder.Read("err"), "");
}

TEST_F(LogOutput, NewFile_IsForItsOwnerAlone)
{
    Log(ToFile(8), "1 one");
    EXPECT_EQ(m_folder.Mode("log"), mode_t{0600});
}

TEST_F(LogOutput, ControlCharacters_DoNotMakeALine)
{
    Log(ToFile(8), "1 \"$(printf 'a\\nb\\r\\t\\033[0m\\177c\\302\\205\\303\\244')\"");
    const std::vector<std::string> lines = Lines("log");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].ends_with(" a\\x0Ab\\x0D\\x09\\x1B[0m\\x7Fc\\x85\xC3\xA4")) << lines[0];
}

TEST_F(LogOutput, FileThatCannotBeWritten_IsNoFailure)
{
    Log("ZUPOLICY_LOG=8:" + m_folder.Path("none/log"), "1 text");
    Log("ZUPOLICY_LOG=8:" + m_folder.Path(""), "1 text");
    Log("ZUPOLICY_LOG=8:/" + std::string(5000, 'x'), "1 text");
    EXPECT_EQ(m_folder.Read("err"), "");
}

TEST_F(LogOutput, ManyProcesses_WriteWholeLines)
{
    const std::string text(300, 'x');
    std::string command;
    for (int i = 0; i < 4; ++i) {
        command += ToFile(8) + " " + m_writer + " 1 " + text + " 200 & ";
    }
    ASSERT_EQ(std::system((command + "wait").c_str()), 0);
    const std::vector<std::string> lines = Lines("log");
    EXPECT_EQ(lines.size(), 800u);
    for (const std::string& line : lines) {
        ASSERT_EQ(line.size(), 14 + std::string(" 1 2048 ").size() + text.size());
        ASSERT_TRUE(line.ends_with(text));
    }
}

TEST_F(LogOutput, ProgramWithMoreRightsThanItsCaller_IgnoresTheEnvironment)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root gives a program another's rights";
    }
    m_writer = m_folder.Path("writer");
    std::filesystem::copy_file(ZUPM_LOG_WRITER, m_writer);
    ASSERT_EQ(::chown(m_writer.c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chmod(m_writer.c_str(), 04755), 0);
    Log(ToFile(8), "1 text");
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"err", "writer"}));
}

}  // namespace
}  // namespace zupm::test
