#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/client/LockedFile.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/FileText.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/RestoreReport.h"
#include "tools/zupolicy/report/UnifiedDiff.h"

namespace zupm::tool {
namespace {

struct RestoreOptions : WriteOptions {
    std::string file;
    std::optional<std::string> from;
    bool list = false;
};

/// The backup that is wanted: the newest, or the one that is named.
std::string ChosenFrom(const std::vector<BackupFile>& backups, const RestoreOptions& options)
{
    if (backups.empty()) {
        throw Failure(ExitCode::FileError, options.file, "there is no backup " + options.file + options.backupSuffix);
    }
    if (!options.from) {
        return backups.front().name;
    }
    if (std::ranges::find(backups, *options.from, &BackupFile::name) == backups.end()) {
        throw Failure(ExitCode::FileError, *options.from, "is no backup of " + options.file + " (--list names them)");
    }
    return *options.from;
}

/// A backup that is no policy file would only break the file.
void RequirePolicyFile(const std::string& backup)
{
    try {
        static_cast<void>(model::OpenToRead(backup));
    } catch (const Error&) {
        Problem problem = CurrentProblem(backup);
        problem.hint = "--force restores it all the same";
        throw ProblemFailure(problem);
    }
}

/// The text of a file with these bytes. Which values a broken file has nobody can say, so all of it is hidden when one
/// is to be.
FileText TextToShow(const std::string& path, const std::string& bytes, const Redaction& redaction)
{
    FileText text = TextOf(bytes, redaction);
    if (!redaction.IsEmpty()) {
        try {
            static_cast<void>(model::OpenToRead(path));
        } catch (const Error&) {
            text.HideAll();
        }
    }
    return text;
}

std::string DiffOf(const RestoreOptions& options, const std::string& backup, const std::string& before,
                   const std::string& after)
{
    const Redaction& redaction = options.hidden;
    return Difference(options.file, options.file, TextToShow(options.file, before, redaction),
                      TextToShow(backup, after, redaction), options.json ? Form::Exact : Form::Visible);
}

/// Replaces the file with a backup of it; a backup of a file that was not replaced goes again.
void Replace(LockedFile& file, const std::string& bytes, const std::string& present, const RestoreOptions& options,
             RestoreResult& result)
{
    result.backup = WriteBackup(options.file, options.backupSuffix);
    try {
        file.Replace(bytes, options.force ? nullptr : &present);
    } catch (const Failure& failure) {
        if (failure.Code() != ExitCode::Written) {
            RemoveBackup(*result.backup);
        }
        throw;
    } catch (...) {
        RemoveBackup(*result.backup);
        throw;
    }
}

RestoreResult Restore(const RestoreOptions& options)
{
    LockedFile file(options.file, std::chrono::seconds(options.lockTimeoutSeconds));
    RestoreResult result{options.file, options.dryRun, false, {}, {}, {}};
    result.restored = ChosenFrom(BackupsOf(options.file, options.backupSuffix), options);
    const std::string bytes = ReadBackup(result.restored);
    const std::string present = file.Read();
    if (options.diff) {
        result.diff = DiffOf(options, result.restored, present, bytes);
    }
    if (bytes == present) {
        return result;
    }
    if (!options.force) {
        RequirePolicyFile(result.restored);
    }
    result.changed = true;
    if (options.dryRun) {
        RehearseBackup(options.file, options.backupSuffix);
        file.Rehearse();
    } else {
        Replace(file, bytes, present, options, result);
    }
    return result;
}

void Print(const RestoreOptions& options, const RestoreResult& result, Streams streams)
{
    WriteRestore(streams, result, {options.json, options.quiet, options.verbose});
    if (result.backup) {
        RequirePrinted(streams, options.file);
    }
}

ExitCode RunRestore(const RestoreOptions& options, Streams streams)
{
    RequireName(options.file);
    if (options.list) {
        WriteBackups(streams.data, options.file, BackupsOf(options.file, options.backupSuffix), options.json);
        return ExitCode::Ok;
    }
    const RestoreResult result = Restore(options);
    Print(options, result, streams);
    return ExitCode::Ok;
}

Action DeclareRestore(CLI::App& line)
{
    const auto options = std::make_shared<RestoreOptions>();
    options->backupSuffix = ".bak";
    AddFile(line, options->file);
    line.add_flag("--backup{.bak}", options->backupSuffix,
                  "The backups have --backup=SUFFIX after the file's name (default: .bak)");
    CLI::Option* const list = line.add_flag("--list", options->list, "List the backups, newest first");
    line.add_option("--from", options->from, "Put this backup of the list back (default: the newest)")
        ->type_name("BACKUP")
        ->excludes(list);
    AddWrite(line, *options);
    line.callback([options] {
        RequireSuffix(options->backupSuffix);
        if (options->backupSuffix.empty()) {
            throw CLI::ValidationError("--backup takes a suffix such as .bak");
        }
    });
    return [options](Streams streams) {
        return Hiding(
            options->hidden, streams, [&] { return RunRestore(*options, streams); }, options->quiet);
    };
}

}  // namespace

constinit const Command kRestore{
    .name = "restore",
    .description =
        "Put the newest backup of a policy file back, in one step. The present file becomes a backup first, so a "
        "second restore undoes the first",
    .examples =
        "  zupolicy restore policy.xml\n"
        "  zupolicy restore policy.xml --list\n"
        "  zupolicy restore policy.xml --from policy.xml.bak.3 --diff --dry-run",
    .declare = DeclareRestore,
};

}  // namespace zupm::tool
