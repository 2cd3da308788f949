#include "tools/zupolicy/commands/Options.h"

#include <CLI/CLI.hpp>

namespace zupm::tool {
namespace {

/// Standard output takes either the document or a report.
void RequireOneUseOfStandardOutput(const EditOptions& edit)
{
    if (edit.GoesToStandardOutput() && (edit.json || edit.dryRun)) {
        throw CLI::ValidationError(
            std::string("--output - writes the document to standard output and cannot be used with ") +
            (edit.json ? "--json" : "--dry-run"));
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

CLI::Option* AddPageOutput(CLI::App& line, std::string& output)
{
    return line
        .add_option("-o,--output", output,
                    "Write the page to PATH, and replace a file that is there in one step (default: standard output)")
        ->type_name("PATH");
}

void AddEdit(CLI::App& line, EditOptions& edit)
{
    line.add_option("--output", edit.output,
                    "Write the result to PATH (- for standard output) and leave FILE as it is (default: replace FILE "
                    "in one step)")
        ->type_name("PATH");
    line.add_flag("--dry-run", edit.dryRun, "Print what would change and write nothing");
    line.add_flag("--force", edit.force, "Write the file even when another program changed it in the meantime");
    line.add_flag("--json", edit.json, "Print the change as JSON");
    AddLockTimeout(line, edit.lockTimeoutSeconds);
    line.callback([&edit] { RequireOneUseOfStandardOutput(edit); });
}

}  // namespace zupm::tool
