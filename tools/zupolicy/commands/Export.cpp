#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <ostream>
#include <sstream>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/LockedFile.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/EntryJson.h"
#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

struct ExportOptions {
    std::string file;
    Target target;
    std::string output = "-";
    bool json = false;
};

std::string SimilarTo(const zupm::PolicyFile& file, const Target& target)
{
    NearestName nearest(target.taskId ? *target.taskId : target.softwareId);
    for (const std::string& id : target.taskId ? file.TaskIds(target.softwareId) : file.PolicyIds()) {
        nearest.Offer(id);
    }
    return nearest.Best() ? "did you mean " + Quoted(*nearest.Best()) + "?" : "";
}

model::Entry EntryOf(const ExportOptions& options)
{
    const model::EntryId id{Valid(options.target.softwareId), options.target.taskId};
    const zupm::PolicyFile file = model::OpenToRead(options.file);
    std::optional<model::Entry> entry = model::Find(file, id);
    if (!entry) {
        const result::Code code = id.taskId ? result::TaskNotFound : result::PolicyNotFound;
        throw ProblemFailure({code, ExitCode::NotFound, options.file, 0, 0,
                              Describe(options.target) + ": " + client::SentenceOf(code),
                              SimilarTo(file, options.target)});
    }
    DropRepeated(*entry);
    return *std::move(entry);
}

model::Entry EntryOrProblem(const ExportOptions& options)
{
    try {
        return EntryOf(options);
    } catch (const Error&) {
        throw ProblemFailure(CurrentProblem(options.file));
    }
}

ExitCode RunExport(const ExportOptions& options, Streams streams)
{
    if (options.target.taskId) {
        static_cast<void>(Valid(*options.target.taskId));
    }
    RequireName(options.file);
    const model::Entry entry = EntryOrProblem(options);
    if (options.output == "-") {
        WriteEntryAsJson(streams.data, entry);
        return ExitCode::Ok;
    }
    RequireName(options.output);
    if (AreSameFile(options.file, options.output)) {
        throw Failure(ExitCode::Usage, options.output, "is FILE itself");
    }
    std::ostringstream json;
    WriteEntryAsJson(json, entry);
    WriteWhole(options.output, json.view());
    if (options.json) {
        WriteWrittenEntryAsJson(streams.data, entry.id, options.output);
        RequirePrinted(streams, options.output);
    }
    return ExitCode::Ok;
}

Action DeclareExport(CLI::App& line)
{
    const auto options = std::make_shared<ExportOptions>();
    AddFile(line, options->file);
    AddTarget(line, options->target);
    line.add_option("-o,--output", options->output, "Write to PATH (default: -, standard output)")->type_name("PATH");
    line.add_flag("--json", options->json, "Print also failures as JSON, and with -o what was written");
    return [options](Streams streams) { return RunExport(*options, streams); };
}

}  // namespace

constinit const Command kExport{
    .name = "export",
    .description = "Print one policy or task as JSON, which `zupolicy import` puts into other files",
    .examples =
        "  zupolicy export policy.xml PRODUCTA1000\n"
        "  zupolicy export policy.xml PRODUCTA1000 --task '{task-1}' -o task.json",
    .declare = DeclareExport,
};

}  // namespace zupm::tool
