// Options of forms that no command may have today: they reach manual pages and completion all the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/zupolicy/commands/help/CommandText.h"

namespace zupm::test {
namespace {

using testing::ElementsAre;

struct Values {
    std::string one;
    std::vector<std::string> several;
    int number = 0;
    bool flag = false;
};

tool::Action Declare(CLI::App& line)
{
    const auto values = std::make_shared<Values>();
    line.add_option("FILE", values->several, "Files")->required();
    line.add_option("-f,--format", values->one, "The form")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "two words"}));
    line.add_option("--number", values->number, "A number")->type_name("N")->check(CLI::Range(1, 64))->group("Numbers");
    line.add_option("--names", values->several, "Names")->type_name("NAME");
    line.add_option("--by-one", values->several, "Names, each after an option of its own")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    CLI::Option* const flag = line.add_flag("--flag", values->flag, "A flag");
    line.add_flag("--copy{.bak}", values->one, "Copy, with --copy=SUFFIX to another name")->excludes(flag);
    return [values](tool::Streams) { return tool::ExitCode::Ok; };
}

class CommandText : public testing::Test {
protected:
    const tool::Command m_command{"name", "What it does", "  example", Declare};
    const tool::CommandText m_text = tool::TextOf(m_command);

    [[nodiscard]] const tool::OptionText& Option(const char* name) const
    {
        const tool::OptionText* const option = m_text.Find(name);
        if (option == nullptr) {
            throw std::runtime_error(std::string("no option ") + name);
        }
        return *option;
    }
};

TEST_F(CommandText, ChoicesAreThoseThatTheParserTakes)
{
    EXPECT_THAT(Option("--format").choices, ElementsAre("text", "two words"));
    EXPECT_EQ(Option("--format").value, "FORMAT");
    EXPECT_THAT(Option("-f").names, ElementsAre("-f", "--format"));
}

TEST_F(CommandText, RangesAreForPeople)
{
    EXPECT_EQ(Option("--number").value, "N");
    EXPECT_EQ(Option("--number").range, "from 1 to 64");
    EXPECT_EQ(Option("--number").group, "Numbers");
}

TEST_F(CommandText, FlagsHaveNoValueUnlessTheyCanBeGivenOne)
{
    EXPECT_EQ(Option("--flag").value, "");
    EXPECT_FALSE(Option("--flag").TakesNextWord());
    EXPECT_EQ(Option("--copy").value, "SUFFIX");
    EXPECT_FALSE(Option("--copy").TakesNextWord());
    EXPECT_THAT(Option("--copy").others, ElementsAre("--flag"));
    EXPECT_TRUE(Option("--names").TakesNextWord());
}

TEST_F(CommandText, WhatRepeatsIsKnown)
{
    EXPECT_TRUE(Option("--names").repeats);
    EXPECT_TRUE(Option("--by-one").repeats);
    EXPECT_FALSE(Option("--format").repeats);
    ASSERT_EQ(m_text.arguments.size(), 1U);
    EXPECT_TRUE(m_text.arguments.front().repeats);
    EXPECT_TRUE(m_text.arguments.front().isRequired);
}

}  // namespace
}  // namespace zupm::test
