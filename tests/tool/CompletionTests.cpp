// What can be typed next, as the completion scripts of the shells ask for it.
#include <sstream>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr const char* kFiles = "\tfiles";

class Completion : public ToolTest {
protected:
    /// The lines of the answer.
    [[nodiscard]] std::vector<std::string> Answer(std::vector<std::string> question) const
    {
        question.insert(question.begin(), "__complete");
        std::istringstream lines(Out(question));
        std::vector<std::string> answer;
        for (std::string line; std::getline(lines, line);) {
            answer.push_back(line);
        }
        return answer;
    }

    /// The candidates for the last of these words, without their descriptions.
    [[nodiscard]] std::vector<std::string> Next(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"words", std::to_string(words.size() - 1)});
        std::vector<std::string> candidates = Answer(words);
        for (std::string& line : candidates) {
            line.resize(line == kFiles ? line.size() : line.find('\t'));
        }
        return candidates;
    }
};

TEST_F(Completion, CommandsAndTheirOptions)
{
    EXPECT_THAT(Next({""}), IsSupersetOf({"show", "set", "doctor", "help"}));
    EXPECT_THAT(Next({"help", "doc"}), ElementsAre("doctor"));
    EXPECT_THAT(Next({"set", "policy.xml", "--lock"}), ElementsAre("--lock-timeout"));
    EXPECT_THAT(Next({"set", "--dry-run", "--d"}), Not(testing::Contains("--dry-run")));
    EXPECT_THAT(Answer({"words", "0", "doc"}), ElementsAre(testing::StartsWith("doctor\tCheck the installation")));
}

TEST_F(Completion, NamesAreThoseOfTheFileOnTheLine)
{
    EXPECT_THAT(Answer({"words", "2", "get", "policy.xml"}),
                ElementsAre("PRODUCTA1000\tpolicy, 2 tasks", "PRODUCTB2000\tpolicy, 1 task", "PRODUCTC3000\tpolicy"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", ""}), ElementsAre("General", "Exclusions", "Notify"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", "--task", "{task-1}", ""}),
                ElementsAre("Schedule", "Scope"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", "--task", "{task-2}", ""}), ElementsAre("Schedule"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTB2000", "--task={"}), ElementsAre("--task={task-1}"));
    // Values are not shown.
    EXPECT_THAT(Answer({"words", "4", "set", "policy.xml", "PRODUCTA1000", "Notify", "Re"}),
                ElementsAre("Recipients\t"));
    EXPECT_THAT(Next({"query", "policy.xml", "--software", "PRODUCTA*", "--section", "S"}),
                ElementsAre("Schedule", "Scope"));
}

TEST_F(Completion, WhereAFileIsNamedTheShellIsAskedForFiles)
{
    EXPECT_THAT(Next({"get", ""}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"set", "policy.xml", "--output="}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"check", "policy.xml", "new"}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"set", "policy.xml", "--lock-timeout", ""}), ElementsAre());
}

TEST_F(Completion, HostileNamesAreQuotedOrLeftOut)
{
    Folder().Write(u"odd.xml", SmallFile("<Product SoftwareID=\"P\"><Section name=\"S\">"
                                         "<Setting name=\"$(touch pwned)\">1</Setting>"
                                         "<Setting name=\"; touch pwned\">1</Setting>"
                                         "<Setting name=\"a&#10;b\">1</Setting><Setting name=\"a&#9;b\">1</Setting>"
                                         "<Setting name=\"a&#x9b;b\">1</Setting>"
                                         "<Setting name=\"a&#x202e;b\">1</Setting>"
                                         "<Setting name=\"-x\">1</Setting><Setting name=\"it's!\">1</Setting>"
                                         "</Section></Product>"));
    EXPECT_THAT(Next({"get", "odd.xml", "P", "S", ""}), ElementsAre("$(touch pwned)", "; touch pwned", "it's!"));
    EXPECT_THAT(Next({"get", "odd.xml", "P", "S", "--", "-"}), ElementsAre("-x"));
    const std::string breaks = " \t\n\"'><=;|&(:";
    EXPECT_THAT(Answer({"line", "zupolicy get odd.xml P S ", breaks}),
                ElementsAre("\\$\\(touch\\ pwned\\)\t", "\\;\\ touch\\ pwned\t", "it\\'s\\!\t"));
    EXPECT_THAT(Answer({"line", "zupolicy get 'odd.xml' P \"S\" '", breaks}),
                ElementsAre("$(touch pwned)\t", "; touch pwned\t", "it'\\''s!\t"));
    EXPECT_THAT(Answer({"line", "zupolicy get odd.xml P S \"", breaks}),
                ElementsAre("\\$(touch pwned)\t", "; touch pwned\t"));
}

TEST_F(Completion, WhatIsWrongPrintsNothing)
{
    Folder().Write(u"broken.xml", "<PolicyFile><PolicyRoot><PolicyGroup><Policy><Product SoftwareID=\"P");
    for (const char* file : {"broken.xml", "missing.xml", ".", "-"}) {
        EXPECT_THAT(Next({"get", file, ""}), ElementsAre()) << file;
    }
    EXPECT_THAT(Answer({}), ElementsAre());
    EXPECT_THAT(Answer({"words", "7", "get"}), ElementsAre());
    EXPECT_THAT(Answer({"words", "x", "get"}), ElementsAre());
}

TEST_F(Completion, TheHelpDoesNotListIt)
{
    EXPECT_THAT(Out({"help"}), Not(HasSubstr("__complete")));
}

}  // namespace
}  // namespace zupm::test
