#include "tools/zupolicy/commands/Options.h"

#include <CLI/CLI.hpp>

#include "tools/zupolicy/commands/RedactOption.h"

namespace zupm::tool {
namespace {

/// Standard output takes either the document or a report.
void RequireOneUseOfStandardOutput(const EditOptions& edit)
{
    if (edit.GoesToStandardOutput() && (edit.json || edit.dryRun || edit.diff || !edit.hidden.IsEmpty())) {
        throw CLI::ValidationError(
            std::string("--output - writes the document to standard output and cannot be used with ") +
            (edit.json     ? "--json"
             : edit.dryRun ? "--dry-run"
             : edit.diff   ? "--diff"
                           : "--redact"));
    }
}

/// With --output FILE is not replaced.
void RequireOneWay(const EditOptions& edit)
{
    if (edit.output && !edit.backupSuffix.empty()) {
        throw CLI::ValidationError("--backup copies the file that is replaced and cannot be used with --output");
    }
}

}  // namespace

void AddFile(CLI::App& line, std::string& file)
{
    line.add_option("FILE", file, "The policy file; - for standard input where it is only read")->required();
}

void AddTarget(CLI::App& line, Target& target)
{
    line.add_option("SOFTWARE-ID", target.softwareId, "The product")->required();
    line.add_option("--task", target.taskId, "Work on this task of the product, not on its policy")
        ->type_name("TASK-ID");
}

void AddJson(CLI::App& line, bool& json)
{
    line.add_flag("--json", json, "Print JSON");
}

void AddQuiet(CLI::App& line, bool& quiet, const char* description)
{
    line.add_flag("-q,--quiet", quiet, description)->excludes(line.get_option("--json"));
}

ExitCode Quietly(const std::function<void()>& look)
{
    try {
        look();
        return ExitCode::Ok;
    } catch (const Failure& failure) {
        if (failure.Code() != ExitCode::NotFound) {
            throw;
        }
        return ExitCode::NotFound;
    }
}

void AddJobs(CLI::App& line, unsigned& jobs, const char* description)
{
    line.add_option("--jobs", jobs, description)->type_name("N")->check(CLI::Range(1, 64));
}

void AddLockTimeout(CLI::App& line, unsigned& seconds)
{
    line.add_option("--lock-timeout", seconds,
                    "How long to wait for another process that is editing FILE (default: 10)")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, 86'400));
}

void RequirePrinted(Streams streams, const std::string& written)
{
    streams.data.flush();
    if (!streams.data) {
        throw Failure(ExitCode::Written, written, "was written, but writing to standard output failed");
    }
}

CLI::Option* AddPageOutput(CLI::App& line, std::string& output)
{
    return line
        .add_option("-o,--output", output,
                    "Write the page to PATH, and replace a file that is there in one step (default: standard output)")
        ->type_name("PATH");
}

void RequireSuffix(const std::string& suffix)
{
    if (suffix.find_first_of("/\\") != suffix.npos) {
        throw CLI::ValidationError("--backup takes a suffix such as .bak, not a path");
    }
}

void AddWrite(CLI::App& line, WriteOptions& write)
{
    line.add_flag("-n,--dry-run", write.dryRun, "Print what would change and write nothing");
    line.add_flag("--diff", write.diff, "Print the lines of the file that change");
    line.add_flag("--force", write.force, "Write the file even when another program changed it in the meantime");
    AddLockTimeout(line, write.lockTimeoutSeconds);
    line.add_flag("--json", write.json, "Print the change as JSON");
    CLI::Option* const quiet =
        line.add_flag("-q,--quiet", write.quiet, "Print no report; failures, --json and --diff are printed");
    line.add_flag("-v,--verbose", write.verbose, "Say for each file whether it changed, as a message")->excludes(quiet);
    AddRedact(line, write.hidden);
}

void AddBackup(CLI::App& line, WriteOptions& write)
{
    line.add_flag("--backup{.bak}", write.backupSuffix,
                  "Copy each file that changes to FILE.bak first, or with --backup=SUFFIX to another name beside it");
}

void AddEdit(CLI::App& line, EditOptions& edit)
{
    line.add_option("-o,--output", edit.output,
                    "Write the result to PATH (- for standard output) and leave FILE as it is (default: replace FILE "
                    "in one step)")
        ->type_name("PATH");
    AddWrite(line, edit);
    AddBackup(line, edit);
    line.callback([&edit] { RequireConsistent(edit); });
}

void RequireConsistent(const EditOptions& edit)
{
    RequireSuffix(edit.backupSuffix);
    RequireOneUseOfStandardOutput(edit);
    RequireOneWay(edit);
}

}  // namespace zupm::tool
