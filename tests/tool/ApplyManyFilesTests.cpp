// apply with several files: which are edited, what is reported, and the exit code.
#include <nlohmann/json.hpp>

#include "EditsTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;

class ThreeFiles : public EditsTest {
protected:
    ThreeFiles()
    {
        for (const char16_t* name : {u"1.xml", u"2.xml", u"3.xml"}) {
            Folder().Write(name, SmallFile("<Product SoftwareID='P'><S name='A'/></Product>"));
        }
        Folder().Write(u"2.xml", "<F>\n<x></F>");
    }
    [[nodiscard]] ToolRun Set(const std::vector<std::string>& options) const
    {
        return ApplyTo({"1.xml", "2.xml", "3.xml"},
                       R"({"edit":"set","softwareId":"P","section":"A","name":"n","value":"1"})", options);
    }
    [[nodiscard]] bool IsEdited(std::u16string_view name) const
    {
        return Bytes(name).find("<Setting name=\"n\">1</Setting>") != std::string::npos;
    }
};

TEST_F(ThreeFiles, OneFailure_EndsTheRun)
{
    const ToolRun run = Set({});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.out, "1.xml: changed (1 edit)\n3.xml: not done\n1 changed, 0 unchanged, 1 failed, 1 not done\n");
    EXPECT_THAT(run.messages, MatchesPattern("2\\.xml:2:[0-9]+: .* \\[SyntaxError, 0xFFFFFBAE\\]\n"));
    EXPECT_TRUE(IsEdited(u"1.xml"));
    EXPECT_FALSE(IsEdited(u"3.xml"));
    EXPECT_EQ(Bytes(u"2.xml"), "<F>\n<x></F>");
}

TEST_F(ThreeFiles, OneFailure_LeavesTheOthersWhenTheRunKeepsGoing)
{
    for (const char* jobs : {"1", "4"}) {
        for (const char16_t* name : {u"1.xml", u"3.xml"}) {
            Folder().Write(name, SmallFile("<Product SoftwareID='P'><S name='A'/></Product>"));
        }
        const ToolRun run = Set({"--keep-going", "--jobs", jobs});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.out,
                  "1.xml: changed (1 edit)\n3.xml: changed (1 edit)\n2 changed, 0 unchanged, 1 failed, 0 not done\n");
        EXPECT_TRUE(IsEdited(u"1.xml"));
        EXPECT_TRUE(IsEdited(u"3.xml"));
    }
}

TEST_F(ThreeFiles, ExitCode_IsThatOfTheFirstFileThatFailed)
{
    Folder().Write(u"1.xml", SmallFile(""));
    EXPECT_EQ(Set({"--keep-going"}).exitCode, 1) << "the policy is missing in the first file";
    EXPECT_EQ(
        ApplyTo({"2.xml", "1.xml"}, R"({"edit":"set","softwareId":"P","section":"A"})", {"--keep-going"}).exitCode, 3);
}

TEST_F(ThreeFiles, Json_HasEveryFileAndTheSummary)
{
    const ToolRun run = Set({"--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.out, testing::StartsWith("{\n  \"schema\": 1,\n  \"dryRun\": false,\n  \"files\": [\n    {\n"
                                             "      \"file\": \"1.xml\",\n      \"result\": \"changed\",\n"));
    const json report = json::parse(run.out);
    const json& files = report.at("files");
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0], (json{{"file", "1.xml"}, {"result", "changed"}, {"edits", 1}, {"backup", nullptr}}));
    EXPECT_EQ(files[1].at("result"), "failed");
    EXPECT_EQ(files[1].at("error").at("code"), "FFFFFBAE");
    EXPECT_EQ(files[1].at("error").at("line"), 2);
    EXPECT_EQ(files[1].at("error").at("exit"), 3);
    EXPECT_EQ(files[2], (json{{"file", "3.xml"}, {"result", "not done"}, {"edits", 0}, {"backup", nullptr}}));
    EXPECT_EQ(report.at("summary"), (json{{"changed", 1}, {"unchanged", 0}, {"failed", 1}, {"notDone", 1}}));
}

TEST_F(ThreeFiles, FilesOfEveryJob_AreReportedInTheOrderOfTheArguments)
{
    std::vector<std::string> names;
    std::string expected;
    for (int i = 40; i > 0; --i) {
        names.push_back(std::to_string(i) + ".xml");
        Folder().Write(std::u16string(names.back().begin(), names.back().end()),
                       SmallFile(i % 2 == 0 ? "<Product SoftwareID='P'/>" : ""));
        expected += names.back() + (i % 2 == 0 ? ": unchanged\n" : ": changed (1 edit)\n");
    }
    expected += "20 changed, 20 unchanged, 0 failed, 0 not done\n";
    const ToolRun run = ApplyTo(names, R"({"edit":"create","softwareId":"P"})", {"--jobs", "8"});
    EXPECT_EQ(run.out, expected);
    EXPECT_EQ(run.messages, "");
}

}  // namespace
}  // namespace zupm::test
