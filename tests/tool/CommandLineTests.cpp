#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class CommandLine : public ToolTest {
protected:
    /// The commands as the help lists them, without `help`.
    [[nodiscard]] std::vector<std::string> Commands() const;
};

std::vector<std::string> CommandLine::Commands() const
{
    const std::string help = Out({"help"});
    std::istringstream lines(help.substr(help.find("Subcommands:\n")));
    std::vector<std::string> commands;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line) && line.starts_with("  ")) {
        commands.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    EXPECT_GT(commands.size(), 1U);
    EXPECT_EQ(commands.back(), "help");
    commands.pop_back();
    return commands;
}

TEST_F(CommandLine, HelpGoesToStandardOutputAndNamesTheExitCodes)
{
    const std::string help = Out({"--help"});
    for (const char* text :
         {"show", "get", "set", "remove", "export-ini", "check", "Exit codes:\n  0  done\n  1  ",
          "\n  2  the command line is wrong\n  3  ", "\n  4  ", "\n  5  ", "\n  6  ", "Examples:\n"}) {
        EXPECT_THAT(help, HasSubstr(text));
    }
}

TEST_F(CommandLine, EveryCommandIsInTheDocumentationAndRefusesToRunWithoutArguments)
{
    const std::filesystem::path manual(ZUPM_MANUAL);
    const std::string synopsis = ReadBytes(manual.u16string());
    std::string pages;
    for (const char* const page : {"reading.md", "writing.md", "many-files.md"}) {
        pages += ReadBytes((manual.parent_path() / "zupolicy" / page).u16string());
    }
    for (const std::string& command : Commands()) {
        EXPECT_THAT(synopsis, HasSubstr("\n    zupolicy " + command + " "));
        EXPECT_THAT(synopsis, HasSubstr(".md#" + command + ")"));
        EXPECT_THAT(pages, HasSubstr("\n## " + command + "\n"));
        // The doctor examines the installation, not a file.
        if (command != "doctor") {
            EXPECT_THAT(Tool({command}), Fails(2, testing::Not("")));
        }
    }
}

TEST_F(CommandLine, VersionIsPrinted)
{
    EXPECT_THAT(Out({"--version"}), MatchesPattern("zupolicy [0-9]+\\.[0-9]+\\.[0-9]+\n"
                                                   "  target     [^\n]+\n"
                                                   "  build      C\\+\\+20, [^\n]+, [A-Za-z]+\n"
                                                   "  JSON       schema 1\n"
                                                   "  encodings  UTF-8, UTF-16 [^\n]+, ISO-8859-1\n"));
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
        {"doctor", "policy.xml"},
        {"remove", "policy.xml", "PRODUCTA1000", "--lock-timeout", "-1"},
        {"remove", "policy.xml", "PRODUCTA1000", "--lock-timeout", "soon"},
    };
    for (const std::vector<std::string>& line : lines) {
        SCOPED_TRACE(testing::PrintToString(line));
        EXPECT_THAT(Tool(line), Fails(2, testing::Not("")));
    }
}

TEST_F(CommandLine, HelpIsACommandAndAnOptionOfEveryCommandAndHasExamples)
{
    EXPECT_EQ(Out({"help"}), Out({"--help"}));
    EXPECT_EQ(Out({"help", "help"}), Out({"help"}));
    for (const std::string& command : Commands()) {
        const std::string help = Out({"help", command});
        EXPECT_THAT(help, HasSubstr("Examples:\n  zupolicy " + command + " "));
        EXPECT_EQ(Out({command, "--help"}), help);
        EXPECT_EQ(Out({command, "-h"}), help);
    }
    EXPECT_THAT(Tool({"help", "shwo"}), Fails(2, HasSubstr("no such command: \"shwo\"; did you mean \"show\"?\n")));
    EXPECT_THAT(Tool({"help", "show", "get"}), Fails(2, HasSubstr("one command at a time")));
}

TEST_F(CommandLine, HelpAndVersionAreAvailableAsJson)
{
    const json commands = json::parse(Out({"help", "--json"})).at("commands");
    std::vector<std::string> names;
    for (const json& command : commands) {
        names.push_back(command.at("name"));
    }
    EXPECT_EQ(names, Commands());
    const std::string one = Out({"help", "--json", "set"});
    ASSERT_EQ(json::parse(one).at("commands").size(), 1U);
    EXPECT_EQ(json::parse(one).at("commands")[0], *std::ranges::find(commands, "set", [](const json& command) {
                  return command.at("name").get<std::string>();
              }));
    EXPECT_EQ(Out({"set", "-h", "--json"}), one);
    EXPECT_THAT(Tool({"help", "--man", "set", "--json"}), Fails(2, HasSubstr("cannot be used with --json")));
    const json version = json::parse(Out({"--version", "--json"}));
    EXPECT_THAT(Out({"--version"}), testing::StartsWith("zupolicy " + version.at("version").get<std::string>() + "\n"));
}

TEST_F(CommandLine, FlagsTakeNoValue)
{
    for (const char* const flag : {"--json=false", "--json=true", "--json=", "--names=no"}) {
        const std::string name = std::string(flag).substr(0, std::string(flag).find('='));
        EXPECT_THAT(Tool({"show", "policy.xml", flag}),
                    Fails(2, testing::StartsWith("zupolicy: " + name + " takes no value\n")));
    }
    EXPECT_THAT(Tool({"set", "policy.xml", "P", "S", "N", "v", "-qn=false"}),
                Fails(2, testing::StartsWith("zupolicy: -n takes no value\n")));
    // What looks like one may be a value.
    EXPECT_EQ(Tool({"report", "policy.xml", "--title", "--json=x", "-o", "--json=y", "--", "policy.xml"}).exitCode, 0);
    EXPECT_TRUE(Folder().Has(u"--json=y"));
    EXPECT_EQ(Tool({"check", "--", "--json=false"}).messages, "--json=false: The file does not exist.\n");
}

TEST_F(CommandLine, MistypedCommandsAndOptionsAreNamedAndCorrected)
{
    const struct {
        std::vector<std::string> line;
        const char* complaint;
    } rows[] = {
        {{"shwo"}, "no such command: \"shwo\"; did you mean \"show\"?"},
        {{"SHOW", "policy.xml"}, "no such command: \"SHOW\"; did you mean \"show\"?"},
        {{"chekc", "policy.xml"}, "no such command: \"chekc\"; did you mean \"check\"?"},
        {{"policy.xml"}, "no such command: \"policy.xml\""},
        {{""}, "no such command: \"\""},
        {{"--jsno"}, "no such command: \"--jsno\""},
        {{"show", "policy.xml", "--jsno"}, "no such option: \"--jsno\"; did you mean \"--json\"?"},
        {{"show", "--Names", "policy.xml"}, "no such option: \"--Names\"; did you mean \"--names\"?"},
        {{"get", "policy.xml", "--tsk=x"}, "no such option: \"--tsk\"; did you mean \"--task\"?"},
        {{"show", "policy.xml", "--frobnicate"}, "no such option: \"--frobnicate\""},
        {{"show", "policy.xml", "PRODUCTA1000", "more"}, "unexpected argument: \"more\""},
        {{}, "a command is missing"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        EXPECT_THAT(Tool(row.line), Fails(2, testing::StartsWith(std::string("zupolicy: ") + row.complaint + "\n")));
    }
}

TEST_F(CommandLine, ComplaintsAreOneLineWhateverTheArgumentHolds)
{
    EXPECT_THAT(Tool({"show\nx: ok\x1B[1m"}),
                Fails(2, testing::StartsWith("zupolicy: no such command: \"show\\nx: ok\\u001b[1m\"\n")));
    EXPECT_THAT(Tool({"show", "policy.xml", "P", "a\nb"}),
                Fails(2, testing::StartsWith("zupolicy: unexpected argument: \"a\\nb\"\n")));
    EXPECT_THAT(Tool({"remove", "policy.xml", "P", "--lock-timeout", "1\n2"}), Fails(2, HasSubstr("1\\n2")));
}

TEST_F(CommandLine, AFolderIsReportedAsAFolder)
{
    std::filesystem::create_directory(Folder().Folder() / "folder");
    EXPECT_THAT(Tool({"check", "."}), Fails(3, ".: is a folder\n"));
    EXPECT_THAT(Tool({"check", "folder"}), Fails(3, "folder: is a folder\n"));
    EXPECT_THAT(Tool({"get", "folder", "P", "S", "N"}),
                Fails(3, testing::StartsWith("zupolicy: folder: is a folder [")));
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
