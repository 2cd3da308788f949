#include <CLI/CLI.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <system_error>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/IniLosses.h"
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

/// An export writes the fields first, so it would begin and then fail.
void RequireFieldsOfOneLine(const model::Entry& task, const ExportIniOptions& options)
{
    const auto require = [&](std::string_view name, std::string_view text) {
        if (text.find_first_of("\r\n") != text.npos) {
            throw ShortFailure({result::GeneralFailure,
                                ExitCode::FileError,
                                options.iniFile,
                                0,
                                0,
                                "the INI file cannot be written: " + Describe(options.target) +
                                    " has a line break in its " + std::string(name),
                                {}});
        }
    };
    require("software ID", task.id.softwareId);
    require("task ID", *task.id.taskId);
    for (std::size_t i = 0; i < task.fields.size(); ++i) {
        require(model::kFieldNames[i], task.fields[i]);
    }
}

void Export(PolicyFile& file, const ExportIniOptions& options, const std::filesystem::path& ini)
{
    const auto task = file.FindTask(options.target);
    RequireFieldsOfOneLine(task->State(), options);
    try {
        task->WriteIni(ToUtf8(ini.u16string()));
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

/// What is lost of a task in its INI file.
struct Losses {
    std::optional<Notices> notices;
    std::optional<PlacedContents> placed;  ///< nothing when no setting is lost by itself
};

void ForEach(const Losses& losses, const Target& task, const std::function<void(const Notice&)>& take)
{
    for (LONG i = 0; i < losses.notices->Count(); ++i) {
        if (losses.notices->IsLossOf(task, i)) {
            take(losses.notices->At(i));
        }
    }
    if (losses.placed) {
        ForEachIniLoss(*losses.placed, task, take);
    }
}

/// What is lost of the task, after it was written.
void Report(const ExportIniOptions& options, const Losses& losses, Streams streams)
{
    if (!options.quiet) {
        ForEach(losses, options.target,
                [&](const Notice& loss) { PrintWarning(streams.messages, options.file, loss); });
    }
    if (options.json) {
        WriteExportAsJson(streams.data, options.target, options.iniFile,
                          [&](const auto& take) { ForEach(losses, options.target, take); });
        streams.data.flush();
        if (!streams.data) {
            throw Failure(ExitCode::Written, "writing to standard output failed");
        }
    }
}

/// Exports from the file at `source`, which is FILE or a copy of it. Sets `isWritten` as soon as the INI file is.
Losses ExportFrom(const std::string& source, const ExportIniOptions& options, std::ostream& data, bool& isWritten)
{
    Losses losses;
    bool hasIniLoss = false;
    {
        PolicyFile file(source, Access::ReadOnly);
        Explaining({options.file, options.target, {}, {}}, [&] { Export(file, options, data); });
        isWritten = true;
        losses.notices = file.Notices();
        hasIniLoss = HasIniLoss(file.FindTask(options.target)->State());
    }
    // The component does not say where a setting is.
    if (hasIniLoss) {
        losses.placed = ReadPlaced(source, [](PolicyFile&) {});
    }
    return losses;
}

ExitCode RunExportIni(const ExportIniOptions& options, Streams streams)
{
    bool isWritten = false;
    try {
        const Losses losses = Reading(options.file, [&](const std::string& source) {
            return ExportFrom(source, options, streams.data, isWritten);
        });
        Report(options, losses, streams);
    } catch (const Failure& failure) {
        if (!isWritten) {
            throw;
        }
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
