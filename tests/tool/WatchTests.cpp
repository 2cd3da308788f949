// Changes of files that are reported while they happen.
#include <nlohmann/json.hpp>

#include <filesystem>

#include "WatchRun.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Watch : public ToolTest {
protected:
    /// Sets a setting in a run of its own, which nothing waits for.
    void Set(const char* file, const char* value) const
    {
        EXPECT_EQ(Tool({"set", file, "PRODUCTA1000", "General", "ScanInterval", value}).exitCode, 0);
    }
};

TEST_F(Watch, ComparesWithTheLastSoundState_HoweverTheFileChanges)
{
    const std::string sample = Bytes();
    WatchRun watch(Folder(), {"policy.xml", "--exit-after", "2"});
    Set("policy.xml", "15");
    watch.WaitForOutput("15");
    std::filesystem::remove(Folder().Folder() / "policy.xml");
    watch.WaitForMessage("does not exist");
    Folder().Write(u"policy.xml", "<a>");
    watch.WaitForMessage("policy.xml:1:");
    Folder().Write(u"policy.xml", sample);
    const ToolRun run = watch.End();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out,
              "policy.xml: ~ policy PRODUCTA1000 General/ScanInterval: \"60\" -> \"15\"\n"
              "policy.xml: ~ policy PRODUCTA1000 General/ScanInterval: \"15\" -> \"60\"\n");
    EXPECT_THAT(run.messages, MatchesPattern("zupolicy: watching 1 file\n"
                                             "policy\\.xml: The file does not exist\\. \\[FileNotFound, 0x80070002\\]\n"
                                             "policy\\.xml:1:[0-9]+: .* \\[SyntaxError, 0xFFFFFBAE\\]\n"
                                             "policy\\.xml: can be read again\n"));
}

TEST_F(Watch, SeveralFiles_OneThatComesLater_InJson)
{
    WatchRun watch(Folder(), {"policy.xml", "late.xml", "--json", "--exit-after", "2", "--redact", "Scan*"});
    Folder().Write(u"late.xml", Bytes());
    watch.WaitForMessage("late.xml: can be read again");
    Set("late.xml", "15");
    watch.WaitForOutput("\"edit\"");
    // Values that are the same after a change are no change.
    Set("policy.xml", "60");
    Set("policy.xml", "16");
    const ToolRun run = watch.End();
    EXPECT_EQ(run.exitCode, 0);
    std::istringstream lines(run.out);
    std::vector<json> objects;
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(json::parse(line));
        EXPECT_THAT(line, testing::StartsWith("{\"schema\": 1, \"time\": \"20"));
        EXPECT_THAT(objects.back().at("time").get<std::string>(),
                    MatchesPattern("20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ"));
    }
    ASSERT_EQ(objects.size(), 4U);
    EXPECT_EQ(objects[0].at("file"), "late.xml");
    EXPECT_EQ(objects[0].at("error").at("name"), "FileNotFound");
    EXPECT_EQ(objects[1].at("file"), "late.xml");
    EXPECT_TRUE(objects[1].at("error").is_null());
    for (const std::size_t i : {2U, 3U}) {
        EXPECT_EQ(objects[i].at("file"), i == 2 ? "late.xml" : "policy.xml");
        EXPECT_EQ(objects[i].at("edit"), "set");
        EXPECT_EQ(objects[i].at("name"), "ScanInterval");
        EXPECT_EQ(objects[i].at("value"), "***");
        EXPECT_EQ(objects[i].at("before"), "***");
        EXPECT_EQ(objects[i].at("redacted"), true);
    }
}

TEST_F(Watch, WithoutAChange_EndsWithTheTime)
{
    const ToolRun run = Tool({"watch", "policy.xml", "--timeout", "1"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.messages, "zupolicy: watching 1 file\n");
}

TEST_F(Watch, OfStandardInput_IsRefused)
{
    EXPECT_THAT(Tool({"watch", "policy.xml", "-", "--json", "--timeout", "1"}),
                Fails(2,
                      "zupolicy: -: standard input cannot be watched: it is read once and has no later state; a file "
                      "of that name is ./-\n"));
}

}  // namespace
}  // namespace zupm::test
