// What can be typed next, on both targets; the rules that no target can change are in CompletionRuleTests.cpp.
#include "CompletionTest.h"

namespace zupm::test {
namespace {

using testing::ElementsAre;

class Completion : public CompletionTest {};

TEST_F(Completion, OfACommandHasItsDescription)
{
    EXPECT_THAT(Answer({"words", "0", "doc"}), ElementsAre(testing::StartsWith("doctor\tCheck the installation")));
}

TEST_F(Completion, NamesAreThoseOfTheFileOnTheLine)
{
    EXPECT_THAT(Answer({"words", "2", "get", "policy.xml"}),
                ElementsAre("PRODUCTA1000\tpolicy, 2 tasks", "PRODUCTB2000\tpolicy, 1 task", "PRODUCTC3000\tpolicy"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTA1000", "--task", "{task-1}", ""}),
                ElementsAre("Schedule", "Scope"));
    EXPECT_THAT(Next({"get", "policy.xml", "PRODUCTB2000", "--task={"}), ElementsAre("--task={task-1}"));
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
    for (const char* file : {"broken.xml", "missing.xml", "."}) {
        EXPECT_THAT(Next({"get", file, ""}), ElementsAre()) << file;
    }
}

}  // namespace
}  // namespace zupm::test
