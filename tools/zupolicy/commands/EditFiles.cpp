#include "tools/zupolicy/commands/EditFiles.h"

#include <zuPolicyManager/Client.h>

#include <CLI/CLI.hpp>

#include <atomic>
#include <ostream>
#include <utility>

#include "tools/zupolicy/client/Interrupt.h"
#include "tools/zupolicy/commands/ApplyToFile.h"
#include "tools/zupolicy/commands/ManyFiles.h"
#include "tools/zupolicy/report/Colour.h"

namespace zupm::tool {
namespace {

ApplyTask TaskOf(const FilesOptions& options, Edits edits)
{
    ApplyTask task;
    task.editsName = std::move(edits.name);
    task.edits = std::move(edits.requests);
    if (!options.backupSuffix.empty()) {
        task.backupSuffix = options.backupSuffix;
    }
    task.dryRun = options.dryRun;
    task.force = options.force;
    if (options.diff) {
        task.diff = options.json ? Form::Exact : Form::Visible;
    }
    task.redaction = options.hidden;
    task.patience = std::chrono::seconds(options.lockTimeoutSeconds);
    return task;
}

ApplyForm FormOf(const FilesOptions& options, bool countsEdits)
{
    return {.isJson = options.json,
            .isDryRun = options.dryRun,
            .isQuiet = options.quiet,
            .isVerbose = options.verbose,
            .hasDiff = options.diff,
            .hasColour = options.diff && HasColour(StandardStream::Output),
            .countsEdits = countsEdits};
}

}  // namespace

void AddFiles(CLI::App& line, FilesOptions& options)
{
    AddWrite(line, options);
    AddBackup(line, options);
    line.add_flag("--keep-going", options.keepGoing, "Go on with the other files when one fails");
    AddJobs(line, options.jobs, "How many files to edit at a time (default: 1)");
    line.callback([&options] { RequireSuffix(options.backupSuffix); });
}

ExitCode EditFiles(const FilesOptions& options, Edits edits, Streams streams)
{
    ApplyReport report(streams, FormOf(options, edits.areCounted));
    const ApplyTask task = TaskOf(options, std::move(edits));
    const Interrupt interrupt;
    std::atomic<bool> hasFailed = false;
    const auto apply = [&](const std::string& path) {
        if (Interrupt::IsAsked() || (hasFailed && !options.keepGoing)) {
            ApplyResult result;
            result.file = path;
            return result;
        }
        const zupm::Runtime runtime;
        ApplyResult result = ApplyToFile(path, task);
        hasFailed = hasFailed || result.problem;
        return result;
    };
    bool isCutShort = false;
    const auto print = [&](const ApplyResult& result) {
        isCutShort = isCutShort || result.state == ApplyResult::State::NotDone;
        report.Add(result);
    };
    ForEachFile(options.files, options.jobs, streams, options.quiet, apply, print);
    report.End();
    streams.data.flush();
    if (!streams.data && report.HasWritten()) {
        throw Failure(ExitCode::Written, "files were written, but writing to standard output failed");
    }
    if (isCutShort && report.Code() == ExitCode::Ok) {
        throw Failure(ExitCode::Other, "interrupted; the files that are not done are as they were");
    }
    return report.Code();
}

}  // namespace zupm::tool
