#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Json.h"
#include "tools/zupolicy/report/ShowText.h"

namespace zupm::tool {
namespace {

struct ShowOptions {
    std::string file;
    std::optional<std::string> softwareId;
    std::optional<std::string> taskId;
    bool namesOnly = false;
    bool json = false;
    bool quiet = false;
    Redaction hidden;
};

void RequireSomething(const FileContents& contents, const ShowOptions& options, const Selection& selection)
{
    const auto isSelected = [&](const auto& record) { return selection.Has(contents, record); };
    if (!options.softwareId || std::any_of(contents.policies.begin(), contents.policies.end(), isSelected) ||
        std::any_of(contents.tasks.begin(), contents.tasks.end(), isSelected)) {
        return;
    }
    const Sought sought{options.file, {*options.softwareId, options.taskId}, {}, {}};
    const result::Code code = options.taskId ? result::TaskNotFound : result::PolicyNotFound;
    const std::string what = Describe(sought.target) + (options.taskId ? "" : " and tasks of it");
    Problem problem{
        {}, ExitCode::NotFound, options.file, 0, 0, what + ": not in the file", SuggestionFor(code, sought)};
    const std::string line = LineOf(problem);
    problem.code = code;
    throw ProblemFailure(std::move(problem), line);
}

/// Mentions the policies and tasks that the file has and that no caller can reach, as `check` does.
void PrintRepeatedEntries(Messages& messages, const ShowOptions& options, const Notices& notices)
{
    for (LONG i = 0; i < notices.Count(); ++i) {
        if (notices.IsRepeatedEntry(options.softwareId, options.taskId, i)) {
            PrintWarning(messages, options.file, notices.At(i));
        }
    }
}

ExitCode RunShow(const ShowOptions& options, Streams streams)
{
    std::optional<Notices> notices;
    const auto takeNotices = [&](PolicyFile& file) {
        if (!options.json && !options.quiet) {
            notices = file.Notices();
        }
    };
    const FileContents contents = ReadPlaced(options.file, takeNotices).contents;
    const Selection selection{options.softwareId, options.taskId, !options.namesOnly, options.hidden};
    if (options.quiet) {
        return Quietly([&] { RequireSomething(contents, options, selection); });
    }
    RequireSomething(contents, options, selection);
    if (options.json) {
        WriteContentsAsJson(streams.data, options.file, contents, selection);
    } else {
        PrintRepeatedEntries(streams.messages, options, *notices);
        WriteContentsAsText(streams.data, options.file, contents, selection);
    }
    return ExitCode::Ok;
}

Action DeclareShow(CLI::App& line)
{
    const auto options = std::make_shared<ShowOptions>();
    AddFile(line, options->file);
    CLI::Option* id = line.add_option("SOFTWARE-ID", options->softwareId, "Only this product's policy and tasks");
    line.add_option("--task", options->taskId, "Only this task of the product")->type_name("TASK-ID")->needs(id);
    line.add_flag("--names", options->namesOnly, "Leave out sections and settings");
    AddRedact(line, options->hidden);
    AddJson(line, options->json);
    AddQuiet(line, options->quiet, "Print nothing; the exit code says whether it is in the file");
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunShow(*options, streams); });
    };
}

}  // namespace

constinit const Command kShow{
    .name = "show",
    .description = "Print versions, policies, tasks, sections and settings as they are in the file",
    .examples =
        "  zupolicy show policy.xml\n"
        "  zupolicy show policy.xml PRODUCTA1000\n"
        "  zupolicy show policy.xml PRODUCTA1000 --task '{task-1}' --json\n"
        "  zupolicy show policy.xml --names",
    .declare = DeclareShow,
};

}  // namespace zupm::tool
