// The manual pages of the commands have what the help has.
#include <gmock/gmock.h>

#include <regex>
#include <sstream>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

/// What the first group of the expression matches, wherever it does.
std::vector<std::string> Words(const std::string& text, const std::string& pattern)
{
    const std::regex expression(pattern);
    std::vector<std::string> words;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), expression); match != std::sregex_iterator();
         ++match) {
        words.push_back((*match)[1]);
    }
    return words;
}

std::string Escaped(const std::string& text)
{
    return std::regex_replace(text, std::regex("-"), "\\-");
}

class ManPage : public ToolTest {
protected:
    /// The commands that the help lists, without `help`.
    [[nodiscard]] std::vector<std::string> Commands() const
    {
        const std::string help = Out({"help"});
        const std::size_t start = help.find("Subcommands:\n");
        const std::string list = help.substr(start, help.find("\n\n", start) - start);
        std::vector<std::string> commands = Words(list, "\n  ([a-z][a-z-]*)");
        std::erase(commands, "help");
        EXPECT_GT(commands.size(), 9U);
        return commands;
    }
};

TEST_F(ManPage, OfEveryCommandHasEachOfItsOptionsAndArguments)
{
    for (const std::string& command : Commands()) {
        const std::string help = Out({"help", command});
        const std::string page = Out({"help", "--man", command});
        EXPECT_THAT(page, HasSubstr("\n.SH NAME\nzupolicy\\-" + Escaped(command) + " \\- "));
        const std::string options = help.substr(0, help.find("\nExamples:"));
        for (const std::string& option : Words(options, "\n  (?:-[a-zA-Z],)?(--[a-z-]+)")) {
            EXPECT_THAT(page, HasSubstr("\\fB" + Escaped(option) + "\\fR")) << command;
        }
        for (const std::string& option : Words(options, "\n  (-[a-zA-Z])[, ]")) {
            EXPECT_THAT(page, HasSubstr("\\fB" + Escaped(option) + "\\fR")) << command;
        }
        for (const std::string& argument : Words(options, "\n  ([A-Z][A-Z-]+) ")) {
            EXPECT_THAT(page, HasSubstr("\\fI" + Escaped(argument) + "\\fR")) << command;
        }
        EXPECT_THAT(page, HasSubstr("\n.SH EXAMPLES\n.EX\nzupolicy " + Escaped(command) + " "));
    }
}

TEST_F(ManPage, OfTheProgramHasEveryCommandAndExitCode)
{
    const std::string page = Out({"help", "--man"});
    for (const std::string& command : Commands()) {
        EXPECT_THAT(page, HasSubstr("\n.TP\n\\fB" + Escaped(command) + "\\fR\n"));
        EXPECT_THAT(page, HasSubstr("\n.BR zupolicy\\-" + Escaped(command) + " (1),\n"));
    }
    for (const char code : std::string("01234567")) {
        EXPECT_THAT(page, HasSubstr(std::string("\n.TP\n\\fB") + code + "\\fR\n"));
    }
    EXPECT_THAT(page, HasSubstr("\n\\fB0\\fR\ndone\n"));
}

TEST_F(ManPage, ExamplesKeepTheirQuotesAndDashes)
{
    EXPECT_THAT(Out({"help", "--man", "get"}),
                HasSubstr("\nzupolicy get policy.xml PRODUCTA1000 General Enabled \\-\\-task \\(aq{task\\-1}\\(aq\n"));
}

TEST_F(ManPage, OfAnythingElseIsRefused)
{
    EXPECT_THAT(Tool({"help", "--man", "shwo"}), Fails(2, HasSubstr("did you mean \"show\"?")));
    EXPECT_THAT(Tool({"help", "--man", "get", "set"}), Fails(2, HasSubstr("one page at a time")));
}

}  // namespace
}  // namespace zupm::test
