#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// What a program reads of a failure.
class FailureAsJson : public ToolTest {
protected:
    FailureAsJson() { Folder().Write(u"broken.xml", "<a>\n <b></a>\n"); }

    /// The failure of a run, which also prints a line for people.
    [[nodiscard]] json Of(const std::vector<std::string>& line) const
    {
        const ToolRun run = Tool(line);
        EXPECT_THAT(run.messages, testing::Not(""));
        EXPECT_EQ(run.out.find('\n'), run.out.size() - 1) << "one line";
        const json document = json::parse(run.out, nullptr, false);
        EXPECT_TRUE(document.is_object() && document.contains("error")) << run.out;
        return document.is_object() ? document.value("error", json::object()) : json::object();
    }
};

json Failure(int exitCode, const json& code, const json& name, const json& file, const std::string& message,
             const json& hint)
{
    return {{"code", code},    {"name", name},      {"exit", exitCode},   {"file", file},
            {"line", nullptr}, {"column", nullptr}, {"message", message}, {"hint", hint}};
}

TEST_F(FailureAsJson, NamesCodeFileSentenceAndSuggestion)
{
    const struct {
        std::vector<std::string> line;
        json expected;
    } rows[] = {
        {{"get", "policy.xml", "PRODUCTX", "General", "Enabled"},
         Failure(1, "FFFFFB49", "PolicyNotFound", "policy.xml",
                 "policy PRODUCTX: There is no product policy with that software ID.", nullptr)},
        {{"get", "policy.xml", "PRODUCTA1000", "general", "Enabled"},
         Failure(1, "FFFFFB50", "SectionNotFound", "policy.xml",
                 "policy PRODUCTA1000: section \"general\": There is no such section.", "did you mean \"General\"?")},
        {{"remove", "policy.xml", "PRODUCTA1000", "Schedule", "Hours", "--task", "{task-1}"},
         Failure(1, "FFFFFB4F", "SettingNotFound", "policy.xml",
                 "task PRODUCTA1000 {task-1}: setting \"Hours\" of section \"Schedule\": There is no such setting.",
                 "did you mean \"Hour\"?")},
        {{"show", "policy.xml", "productb2000"},
         Failure(1, "FFFFFB49", "PolicyNotFound", "policy.xml", "policy productb2000 and tasks of it: not in the file",
                 "did you mean \"PRODUCTB2000\"?")},
        {{"show", "none.xml"}, Failure(3, "80070002", "FileNotFound", "none.xml", "The file does not exist.", nullptr)},
        {{"set", "policy.xml", "PRODUCTX", "General", "Enabled", "1"},
         Failure(1, "FFFFFB49", "PolicyNotFound", "policy.xml",
                 "policy PRODUCTX: There is no product policy with that software ID.", "--create adds it")},
        {{"set", "policy.xml", "PRODUCTA100", "General", "Enabled", "1"},
         Failure(1, "FFFFFB49", "PolicyNotFound", "policy.xml",
                 "policy PRODUCTA100: There is no product policy with that software ID.",
                 "did you mean \"PRODUCTA1000\"?")},
        {{"export-ini", "policy.xml", "PRODUCTA1000", "none/task.ini", "--task", "{task-1}"},
         Failure(3, "80004005", "GeneralFailure", "none/task.ini", "the INI file cannot be written", nullptr)},
        {{"export-ini", "policy.xml", "PRODUCTA1000", "task.ini", "--task", "task-1"},
         Failure(1, "FFFFFB48", "TaskNotFound", "policy.xml",
                 "task PRODUCTA1000 task-1: There is no task with that software ID and task ID.",
                 "did you mean \"{task-1}\"?")},
        {{"diff", "none.xml", "policy.xml"},
         Failure(3, "80070002", "FileNotFound", "none.xml", "The file does not exist.", nullptr)},
        {{"apply", "policy.xml", "--edits", "none"},
         Failure(3, nullptr, nullptr, "none", "the edits cannot be read: The file does not exist.", nullptr)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        std::vector<std::string> line = row.line;
        line.emplace_back("--json");
        EXPECT_EQ(Of(line), row.expected);
    }
}

TEST_F(FailureAsJson, NamesLossesOfAnExportAsItsResult)
{
    Folder().Write(u"twice.xml", SmallFile("",
                                           "<TaskGroup SoftwareID='P' TaskID='T'><Task><Section name='S'><Setting "
                                           "name='a'>1</Setting><Setting name='A'>2</Setting></Section></Task>"
                                           "</TaskGroup>"));
    const std::vector<std::string> line = {"export-ini", "twice.xml", "P", "task.ini", "--task", "T"};
    std::vector<std::string> withJson = line;
    withJson.emplace_back("--json");
    const ToolRun run = Tool(withJson);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.messages, HasSubstr("warning: "));
    const json report = json::parse(run.out);
    EXPECT_EQ(report["written"], "task.ini");
    ASSERT_EQ(report["warnings"].size(), 1U);
    EXPECT_THAT(report["warnings"][0]["message"], HasSubstr("have the same name in an INI file"));
    std::vector<std::string> quiet = line;
    quiet.emplace_back("-q");
    EXPECT_EQ(Out(quiet), "");
}

TEST_F(FailureAsJson, NamesTheMissingElement)
{
    Folder().Write(u"empty.xml", "<F><PolicyRoot/></F>");
    const json failure = Of({"set", "empty.xml", "P", "S", "N", "1", "--create", "--json"});
    EXPECT_EQ(failure, Failure(4, "FFFFFBB4", "ElementMissing", "empty.xml",
                               "policy P: The file has no PolicyGroup element to put it in.", nullptr));
}

TEST_F(FailureAsJson, NamesThePlace)
{
    const json failure = Of({"--json", "broken.xml"});
    EXPECT_EQ(failure["exit"], 2) << "an option before the command is no command";
    for (const std::vector<std::string>& line : {std::vector<std::string>{"get", "broken.xml", "P", "S", "N", "--json"},
                                                 {"diff", "policy.xml", "broken.xml", "--json"}}) {
        const json broken = Of(line);
        EXPECT_EQ(broken["name"], "SyntaxError");
        EXPECT_EQ(broken["file"], "broken.xml");
        EXPECT_EQ(broken["line"], 2);
        EXPECT_EQ(broken["column"], 7);
        EXPECT_EQ(broken["message"], "mismatched tag");
    }
}

TEST_F(FailureAsJson, IsPrintedForAWrongLineToo)
{
    const std::string advice = "zupolicy help get explains the command.";
    const struct {
        std::vector<std::string> line;
        const char* message;
        std::string hint;
    } rows[] = {
        {{"shwo", "--json"}, "no such command: \"shwo\"", "did you mean \"show\"?"},
        {{"get", "--json"}, "FILE is required", advice},
        {{"get", "--jsno", "--json"}, "no such option: \"--jsno\"", "did you mean \"--json\"?"},
        {{"get", "policy.xml", "P", "S", "N", "--json", "--quiet"}, "--json excludes --quiet", advice},
        {{"export-ini", "policy.xml", "P", "-", "--task", "T", "--json"},
         "the export goes to standard output, so --json cannot be used",
         "zupolicy help export-ini explains the command."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        EXPECT_EQ(Of(row.line), Failure(2, nullptr, nullptr, nullptr, row.message, row.hint));
    }
}

TEST_F(FailureAsJson, IsNotPrintedForAValueThatLooksLikeTheOption)
{
    const ToolRun run = Tool({"set", "policy.xml", "PRODUCTX", "General", "Enabled", "--", "--json"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
}

TEST_F(FailureAsJson, QuietCommandsSayOnlyByTheExitCodeThatSomethingIsMissing)
{
    const struct {
        std::vector<std::string> line;
        int exitCode;
    } rows[] = {
        {{"get", "policy.xml", "PRODUCTA1000", "General", "Enabled", "-q"}, 0},
        {{"get", "policy.xml", "PRODUCTA1000", "General", "Nothing", "--quiet"}, 1},
        {{"show", "policy.xml", "PRODUCTA1000", "-q"}, 0},
        {{"show", "policy.xml", "PRODUCTX", "-q"}, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        const ToolRun run = Tool(row.line);
        EXPECT_EQ(run.exitCode, row.exitCode);
        EXPECT_EQ(run.out + run.messages, "");
    }
    EXPECT_THAT(Tool({"get", "none.xml", "P", "S", "N", "-q"}), Fails(3, HasSubstr("FileNotFound")));
}

class Input : public ToolTest {};

TEST_F(Input, IsFileDash)
{
    const std::vector<std::string> get = {"get", "-", "PRODUCTA1000", "General", "ScanInterval"};
    EXPECT_EQ(ToolReading(u"policy.xml", get).out, "60\n");
    EXPECT_THAT(ToolReading(u"policy.xml", {"show", "-", "--json"}).out, HasSubstr("\"file\": \"-\""));
    const ToolRun same = ToolReading(u"policy.xml", {"diff", "policy.xml", "-"});
    EXPECT_EQ(same.out + same.messages, "");
    const std::vector<std::string> set = {"set", "-", "PRODUCTA1000", "General", "ScanInterval", "61"};
    EXPECT_THAT(ToolReading(u"policy.xml", set), Fails(2, HasSubstr("-: standard input cannot be replaced")));
    Folder().Write(u"broken.xml", "<a>\n<b>\x1A</a>");
    EXPECT_THAT(ToolReading(u"broken.xml", {"check", "-"}), Fails(3, "-:2:4: not well-formed (invalid token)\n"))
        << "Ctrl-Z is no end";
}

}  // namespace
}  // namespace zupm::test
