// The commands as data: what the help has, and what holds for every option. The same on both targets, and many runs.
#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class HelpJson : public ToolTest {
protected:
    const json m_commands = json::parse(Out({"help", "--json"})).at("commands");
};

TEST_F(HelpJson, OfEveryCommandHasWhatTheHelpHas)
{
    for (const json& command : m_commands) {
        const std::string name = command.at("name");
        const std::string help = Out({"help", name});
        EXPECT_THAT(command.at("examples").at(0).get<std::string>(), testing::StartsWith("zupolicy " + name));
        for (const json& argument : command.at("arguments")) {
            EXPECT_THAT(help, HasSubstr("\n  " + argument.at("name").get<std::string>() + " ")) << name;
        }
        for (const json& option : command.at("options")) {
            EXPECT_THAT(help, HasSubstr(option.at("names").back().get<std::string>())) << name;
        }
    }
}

TEST_F(HelpJson, Options_SayWhatTheyTake)
{
    const json all = json::parse(Out({"help", "--json", "apply"})).at("commands").at(0);
    const auto option = [&](const std::string& name) {
        for (const json& each : all.at("options")) {
            if (each.at("names").back() == name) {
                return each;
            }
        }
        return json();
    };
    EXPECT_EQ(all.at("arguments").at(0).at("repeats"), true);
    EXPECT_EQ(option("--dry-run").at("names"), json::parse(R"(["-n", "--dry-run"])"));
    EXPECT_EQ(option("--dry-run").at("value"), nullptr);
    EXPECT_EQ(option("--backup").at("value"), "SUFFIX");
    EXPECT_EQ(option("--backup").at("valueIsOptional"), true);
    EXPECT_EQ(option("--jobs").at("range"), "from 1 to 64");
    EXPECT_EQ(option("--edits").at("required"), true);
    EXPECT_EQ(option("--redact").at("repeats"), true);
    EXPECT_EQ(option("--verbose").at("notWith"), json::parse(R"(["--quiet"])"));
}

TEST_F(HelpJson, EveryCommandHasTheOptionJson)
{
    for (const json& command : m_commands) {
        EXPECT_THAT(command.at("options").dump(), HasSubstr("\"--json\"")) << command.at("name");
    }
}

TEST_F(HelpJson, NoFlagOfAnyCommandTakesAValue)
{
    std::size_t flags = 0;
    for (const json& command : m_commands) {
        for (const json& option : command.at("options")) {
            for (const json& name : option.at("names")) {
                if (option.at("value") == nullptr) {
                    const auto flag = name.get<std::string>();
                    EXPECT_THAT(Tool({command.at("name"), flag + "=false"}),
                                Fails(2, testing::StartsWith("zupolicy: " + flag + " takes no value\n")));
                    ++flags;
                }
            }
        }
    }
    EXPECT_GT(flags, 60U);
}

}  // namespace
}  // namespace zupm::test
