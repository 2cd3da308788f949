#include "tools/zupolicy/commands/Edit.h"

#include <chrono>
#include <filesystem>
#include <ostream>
#include <utility>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/WriteToStream.h"
#include "tools/zupolicy/report/Change.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

void Commit(PolicyFile& file, const EditOptions& options)
{
    try {
        file.Commit(options.force);
    } catch (const CallError& error) {
        if (error.Result() != result::FileChanged) {
            throw;
        }
        throw Failure(ExitCode::Changed, file.Path() +
                                             ": was changed by something else meanwhile and is left alone "
                                             "(--force writes it)");
    }
}

/// A file that would only get new time stamps is left alone, so a job that runs every hour does not touch it every
/// hour; a file that was asked for by name is always written.
void Write(PolicyFile& file, Change& change, const EditOptions& options)
{
    if (options.output) {
        file.Write(*options.output);
        change.written = *options.output;
    } else if (change.changed) {
        Commit(file, options);
        change.written = file.Path();
    }
}

/// FILE named as the output would be replaced without its lock, and without a look at what it is by then.
void RequireAnotherFile(const std::string& file, const std::string& output)
{
    std::error_code ignored;
    if (IsUtf8(file) && IsUtf8(output) &&
        fs::equivalent(fs::path(FromUtf8(file)), fs::path(FromUtf8(output)), ignored)) {
        throw Failure(ExitCode::Usage, output + ": is FILE itself; without --output it is replaced");
    }
}

void Print(const Change& change, const EditOptions& options, Streams streams)
{
    if (options.json) {
        WriteChangeAsJson(streams.data, change);
    } else if (options.dryRun) {
        streams.data << ChangeAsText(change);
    }
    streams.data.flush();
    if (!streams.data && change.written) {
        throw Failure(ExitCode::Written, *change.written + ": is written, but standard output cannot be written");
    }
}

}  // namespace

PolicyFile OpenToEdit(const std::string& file, const EditOptions& options)
{
    if (options.output) {
        RequireAnotherFile(file, *options.output);
        return PolicyFile(file, Access::Copy);
    }
    const std::chrono::seconds patience(options.lock.timeoutSeconds);
    try {
        return PolicyFile(file, patience);
    } catch (const CallError& error) {
        if (error.Result() != result::FileLocked) {
            throw;
        }
        throw Failure(ExitCode::Locked, file + ": another process is editing it; gave up after " +
                                            std::to_string(patience.count()) + " s (--lock-timeout)");
    }
}

void FinishEdit(PolicyFile& file, Change change, const EditOptions& options, Streams streams)
{
    if (options.GoesToStandardOutput()) {
        WriteToStream(file, streams.data);
        return;
    }
    if (!options.dryRun) {
        Write(file, change, options);
    } else if (!options.output && change.changed) {
        file.RehearseCommit(options.force);
    }
    Print(change, options, streams);
}

}  // namespace zupm::tool
