#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class CommandLine : public ToolTest {};

TEST_F(CommandLine, HelpGoesToStandardOutputAndNamesTheExitCodes)
{
    const std::string help = Out({"--help"});
    for (const char* text :
         {"show", "get", "set", "remove", "export-ini", "check", "Exit codes:\n  0  done\n  1  ",
          "\n  2  the command line is wrong\n  3  ", "\n  4  ", "\n  5  ", "\n  6  ", "Examples:\n"}) {
        EXPECT_THAT(help, HasSubstr(text));
    }
}

TEST_F(CommandLine, EveryCommandHasHelpWithExamples)
{
    for (const std::string command : {"show", "get", "set", "remove", "export-ini", "check"}) {
        EXPECT_THAT(Out({command, "--help"}), HasSubstr("Examples:\n  zupolicy " + command + " "));
    }
}

TEST_F(CommandLine, VersionIsPrinted)
{
    EXPECT_THAT(Out({"--version"}), MatchesPattern("zupolicy [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(CommandLine, WrongLinesAreUsageErrors)
{
    const std::vector<std::vector<std::string>> lines = {
        {},
        {"frobnicate"},
        {"show"},
        {"show", "policy.xml", "PRODUCTA1000", "extra"},
        {"show", "policy.xml", "--task", "{task-1}"},
        {"show", "policy.xml", "--unknown"},
        {"get", "policy.xml", "PRODUCTA1000", "General"},
        {"set", "policy.xml", "PRODUCTA1000", "General", "Enabled"},
        {"remove", "policy.xml"},
        {"check"},
        {"remove", "policy.xml", "PRODUCTA1000", "--lock-timeout", "-1"},
        {"remove", "policy.xml", "PRODUCTA1000", "--lock-timeout", "soon"},
    };
    for (const std::vector<std::string>& line : lines) {
        SCOPED_TRACE(testing::PrintToString(line));
        EXPECT_THAT(Tool(line), Fails(2, testing::Not("")));
    }
}

TEST_F(CommandLine, FilesMayHaveAnyName)
{
    for (const char16_t* name : {u"[a].xml", u"größe 🚀.xml", u"get", u"@x.xml"}) {
        (void)Folder().Write(name, Bytes());
        const std::string utf8 = std::filesystem::path(name).string();
        EXPECT_EQ(Out({"check", utf8}), "");
        EXPECT_EQ(Out({"get", utf8, "PRODUCTA1000", "General", "ScanInterval"}), "60\n");
    }
}

}  // namespace
}  // namespace zupm::test
