// The rules of completion that have nothing to do with the target.
#include "CompletionTest.h"

namespace zupm::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

class CompletionRule : public CompletionTest {};

TEST_F(CompletionRule, CommandsAndTheirOptions)
{
    EXPECT_THAT(Next({""}), IsSupersetOf({"show", "set", "doctor", "help"}));
    EXPECT_THAT(Next({"help", "doc"}), ElementsAre("doctor"));
    EXPECT_THAT(Next({"set", "policy.xml", "--lock"}), ElementsAre("--lock-timeout"));
    EXPECT_THAT(Next({"set", "--dry-run", "--d"}), Not(testing::Contains("--dry-run")));
    EXPECT_THAT(Next({"set", "--redact", "Password", "--red"}), ElementsAre("--redact"));
    EXPECT_THAT(Next({"help", "--"}), ElementsAre("--json", "--man"));
}

TEST_F(CompletionRule, NamesFitWhatTheLineHasSoFar)
{
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", ""}), ElementsAre("General", "Exclusions", "Notify"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", "--task", "{task-1}", ""}),
                ElementsAre("Schedule", "Scope"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", "--task", "{task-2}", ""}), ElementsAre("Schedule"));
    // Values are not shown.
    EXPECT_THAT(Answer({"words", "4", "set", "policy.xml", "PRODUCTA1000", "Notify", "Re"}),
                ElementsAre("Recipients\t"));
    EXPECT_THAT(Next({"query", "policy.xml", "--software", "PRODUCTA*", "--section", "S"}),
                ElementsAre("Schedule", "Scope"));
}

TEST_F(CompletionRule, WhereAFileIsNamedTheShellIsAskedForFiles)
{
    EXPECT_THAT(Next({"get", ""}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"set", "policy.xml", "--output="}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"check", "policy.xml", "new"}), ElementsAre(kFiles));
    EXPECT_THAT(Next({"set", "policy.xml", "--lock-timeout", ""}), ElementsAre());
}

TEST_F(CompletionRule, AWrongQuestionGetsNoAnswer)
{
    EXPECT_THAT(Answer({}), ElementsAre());
    EXPECT_THAT(Answer({"words", "7", "get"}), ElementsAre());
    EXPECT_THAT(Answer({"words", "x", "get"}), ElementsAre());
    EXPECT_THAT(Next({"shwo", ""}), ElementsAre());
    // Standard input is not read, and a file of that name is not what the line means.
    Folder().Write(u"-", Bytes());
    EXPECT_THAT(Next({"get", "-", ""}), ElementsAre());
}

TEST_F(CompletionRule, NobodyWaitsForALargeFileOrReadsThousandsOfNames)
{
    std::string settings;
    for (int number = 0; number < 5000; ++number) {
        settings += "<Setting name=\"s" + std::to_string(number) + "\">1</Setting>";
    }
    const std::string start = "<Product SoftwareID=\"P\"><Section name=\"S\">";
    const std::string end = "</Section></Product>";
    Folder().Write(u"many.xml", SmallFile(start + settings + end));
    EXPECT_EQ(Next({"get", "many.xml", "P", "S", ""}).size(), 5000U);
    Folder().Write(u"more.xml", SmallFile(start + settings + "<Setting name=\"t\">1</Setting>" + end));
    EXPECT_THAT(Next({"get", "more.xml", "P", "S", ""}), ElementsAre());
    EXPECT_THAT(Next({"get", "more.xml", "P", "S", "t"}), ElementsAre("t"));
    const std::string filling(std::size_t{16} << 20U, ' ');
    Folder().Write(u"large.xml", SmallFile(start + filling + end));
    EXPECT_THAT(Next({"get", "large.xml", ""}), ElementsAre());
}

TEST_F(CompletionRule, TheHelpDoesNotListIt)
{
    EXPECT_THAT(Out({"help"}), Not(HasSubstr("__complete")));
}

}  // namespace
}  // namespace zupm::test
