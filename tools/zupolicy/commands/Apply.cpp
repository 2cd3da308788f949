#include <zuPolicyManager/Client.h>

#include <CLI/CLI.hpp>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "tools/zupolicy/commands/ApplyToFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/InOrder.h"
#include "tools/zupolicy/commands/Interrupt.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/model/ReadEdits.h"

namespace zupm::tool {
namespace {

struct ApplyOptions {
    std::vector<std::string> files;
    std::string edits;
    std::string backupSuffix;
    bool dryRun = false;
    bool keepGoing = false;
    bool force = false;
    bool json = false;
    unsigned jobs = 1;
    unsigned lockTimeoutSeconds = 10;
};

ProblemFailure Unreadable(const std::string& name)
{
    return ProblemFailure({{}, ExitCode::FileError, name, 0, 0, "the edits cannot be read", {}});
}

std::vector<model::EditRequest> ReadStream(std::istream& in, const std::string& name)
{
    try {
        return model::ReadEdits(in);
    } catch (const model::EditsComplaint& complaint) {
        throw ProblemFailure({result::SyntaxError,
                              ExitCode::FileError,
                              name,
                              complaint.place.line,
                              complaint.place.column,
                              complaint.message,
                              {}});
    } catch (const std::ios_base::failure&) {
        throw Unreadable(name);
    }
}

std::vector<model::EditRequest> ReadEditsOf(const ApplyOptions& options)
{
    if (options.edits == "-") {
        std::vector<model::EditRequest> edits = ReadStream(std::cin, "-");
        // The stream takes an error for the end, and half of the edits must not pass for all of them.
        if (std::ferror(stdin) != 0) {
            throw Unreadable("-");
        }
        return edits;
    }
    std::ifstream file(std::filesystem::path(std::u8string(options.edits.begin(), options.edits.end())),
                       std::ios::binary);
    if (!file) {
        throw Unreadable(options.edits);
    }
    return ReadStream(file, options.edits);
}

ApplyTask TaskOf(const ApplyOptions& options)
{
    ApplyTask task;
    task.editsName = options.edits;
    task.edits = ReadEditsOf(options);
    if (!options.backupSuffix.empty()) {
        task.backupSuffix = options.backupSuffix;
    }
    task.dryRun = options.dryRun;
    task.force = options.force;
    task.patience = std::chrono::seconds(options.lockTimeoutSeconds);
    return task;
}

ExitCode RunApply(const ApplyOptions& options, Streams streams)
{
    const ApplyTask task = TaskOf(options);  // before any file is touched
    const Interrupt interrupt;
    ApplyReport report(streams, options.json, options.dryRun);
    std::atomic<bool> hasFailed = false;
    const auto apply = [&](std::size_t number) {
        if (Interrupt::IsAsked() || (hasFailed && !options.keepGoing)) {
            return ApplyResult{options.files[number], ApplyResult::State::NotDone, 0, {}, {}, {}};
        }
        const zupm::Runtime runtime;
        ApplyResult result = ApplyToFile(options.files[number], task);
        hasFailed = hasFailed || result.problem;
        return result;
    };
    bool isCutShort = false;
    const auto print = [&](std::size_t /*number*/, const ApplyResult& result) {
        isCutShort = isCutShort || result.state == ApplyResult::State::NotDone;
        report.Add(result);
    };
    InOrder(options.files.size(), options.jobs, apply, print).Run();
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

/// A suffix is part of a name: a backup always lies beside its file.
void RequireSuffix(const std::string& suffix)
{
    if (suffix.find_first_of("/\\") != suffix.npos) {
        throw CLI::ValidationError("--backup takes a suffix such as .bak, not a path");
    }
}

Action DeclareApply(CLI::App& line)
{
    const auto options = std::make_shared<ApplyOptions>();
    line.add_option("FILE", options->files, "The policy files")->required();
    line.add_option("--edits", options->edits, "The edits: JSON, one object a line (- for standard input)")
        ->type_name("EDITS")
        ->required();
    line.add_flag("--dry-run", options->dryRun, "Print what would change and write nothing");
    line.add_flag("--backup{.bak}", options->backupSuffix,
                  "Copy each file that changes to FILE.bak first, or with --backup=SUFFIX to another name beside it");
    line.add_flag("--keep-going", options->keepGoing, "Go on with the other files when one fails");
    AddJobs(line, options->jobs, "How many files to edit at a time (default: 1)");
    line.add_flag("--force", options->force, "Write a file even when another program changed it in the meantime");
    AddLockTimeout(line, options->lockTimeoutSeconds);
    line.add_flag("--json", options->json, "Print the report as JSON");
    line.callback([options] { RequireSuffix(options->backupSuffix); });
    return [options](Streams streams) { return RunApply(*options, streams); };
}

}  // namespace

constinit const Command kApply{
    .name = "apply",
    .description =
        "Make many edits in policy files. In each file all are made, in one write, or none. A file that is as the "
        "edits want it is not written",
    .examples =
        "  zupolicy apply policy.xml --edits edits.jsonl --dry-run\n"
        "  zupolicy apply *.xml --edits edits.jsonl --backup --keep-going\n"
        "  zupolicy diff old.xml new.xml --ignore-versions --json | zupolicy apply policy.xml --edits -",
    .declare = DeclareApply,
};

}  // namespace zupm::tool
