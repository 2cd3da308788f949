#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <ostream>
#include <system_error>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {
namespace {

struct ExportIniOptions {
    std::string file;
    Target target;
    std::string iniFile;
    bool json = false;
    bool quiet = false;

    [[nodiscard]] bool GoesToStandardOutput() const { return iniFile == "-"; }
};

void Export(PolicyFile& file, const ExportIniOptions& options, const std::filesystem::path& ini)
{
    try {
        file.FindTask(options.target)->WriteIni(ToUtf8(ini.u16string()));
    } catch (const ProblemFailure& failure) {
        if (failure.What().code != result::GeneralFailure) {
            throw;
        }
        throw ShortFailure(
            {result::GeneralFailure, ExitCode::FileError, options.iniFile, 0, 0, "the INI file cannot be written", {}});
    }
}

/// Writing settings into the policy file would destroy it.
void RequireNotThePolicyFile(const std::string& policyFile, const std::string& iniFile)
{
    if (AreSameFile(policyFile, iniFile)) {
        throw Failure(ExitCode::Usage, iniFile, "is the policy file; name another file for the export");
    }
}

void ExportToFile(PolicyFile& file, const ExportIniOptions& options)
{
    if (options.iniFile.empty()) {
        throw Failure(ExitCode::Usage, "the INI file's name is empty");
    }
    RequireName(options.iniFile);
    // Windows searches for an INI file without a folder in its own folder, not in the current one.
    const std::filesystem::path ini = std::filesystem::absolute(std::filesystem::path(FromUtf8(options.iniFile)));
    if (!IsOrdinaryFile(ini)) {
        throw ProblemFailure(
            {{}, ExitCode::FileError, options.iniFile, 0, 0, "not a regular file", "use - for standard output"});
    }
    RequireNotThePolicyFile(options.file, options.iniFile);
    Export(file, options, ini);
}

/// An export needs a file, because each setting is written into what the file holds. A temporary one serves.
void ExportToStream(PolicyFile& file, const ExportIniOptions& options, std::ostream& data)
{
    try {
        const TemporaryFolder folder;
        const std::filesystem::path ini = folder.Path() / "task.ini";
        Export(file, options, ini);
        WriteFileTo(data, ini);
    } catch (const std::system_error& error) {
        throw Failure(ExitCode::FileError, std::string("a temporary file cannot be used: ") + error.what());
    }
}

void Export(PolicyFile& file, const ExportIniOptions& options, std::ostream& data)
{
    if (options.GoesToStandardOutput()) {
        ExportToStream(file, options, data);
    } else {
        ExportToFile(file, options);
    }
}

void PrintLosses(Messages& messages, const PolicyFile& file, const Notices& notices, const Target& task)
{
    for (LONG i = 0; i < notices.Count(); ++i) {
        if (notices.IsLossOf(task, i)) {
            PrintWarning(messages, file.Path(), notices.At(i));
        }
    }
}

/// What is lost of the task, after it was written.
void Report(PolicyFile& file, const ExportIniOptions& options, Streams streams)
{
    const Notices notices = file.Notices();
    if (!options.quiet) {
        PrintLosses(streams.messages, file, notices, options.target);
    }
    if (options.json) {
        WriteExportAsJson(streams.data, options.target, options.iniFile, notices);
        streams.data.flush();
        if (!streams.data) {
            throw Failure(ExitCode::Written, "writing to standard output failed");
        }
    }
}

ExitCode RunExportIni(const ExportIniOptions& options, Streams streams)
{
    PolicyFile file(options.file, Access::ReadOnly);
    Explaining({options.file, options.target, {}, {}}, [&] { Export(file, options, streams.data); });
    try {
        Report(file, options, streams);
    } catch (const Failure& failure) {
        Problem problem = CurrentProblem(options.file);
        problem.exit = ExitCode::Written;
        problem.message = "the export was written, but: " + problem.message;
        throw ProblemFailure(std::move(problem), std::string("the export was written, but: ") + failure.what());
    }
    return ExitCode::Ok;
}

/// Standard output takes either the export or a report.
void RequireOneUseOfStandardOutput(const ExportIniOptions& options)
{
    if (options.GoesToStandardOutput() && options.json) {
        throw CLI::ValidationError("the export goes to standard output, so --json cannot be used");
    }
}

Action DeclareExportIni(CLI::App& line)
{
    const auto options = std::make_shared<ExportIniOptions>();
    AddFile(line, options->file);
    AddTarget(line, options->target);
    line.get_option("--task")->required();
    line.add_option("INI-FILE", options->iniFile, "The INI file, created when missing; - for standard output")
        ->required();
    AddJson(line, options->json);
    AddQuiet(line, options->quiet, "Print no warnings about settings that are lost");
    line.callback([options] { RequireOneUseOfStandardOutput(*options); });
    return [options](Streams streams) { return RunExportIni(*options, streams); };
}

}  // namespace

constinit const Command kExportIni{
    .name = "export-ini",
    .description = "Write the fields and settings of a task into an INI file, which keeps its other lines",
    .examples = "  zupolicy export-ini policy.xml PRODUCTA1000 task.ini --task '{task-1}'",
    .declare = DeclareExportIni,
};

}  // namespace zupm::tool
