#include "tools/zupolicy/commands/Edit.h"

#include <chrono>
#include <ostream>
#include <string>
#include <utility>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/report/Change.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {
namespace {

void Commit(PolicyFile& file, const EditOptions& options)
{
    try {
        file.Commit(options.force);
    } catch (const ProblemFailure& failure) {
        Problem problem = failure.What();
        if (problem.code != result::FileChanged) {
            throw;
        }
        problem.message = "another program changed it in the meantime; it was not overwritten";
        throw ShortFailure(problem);
    }
}

/// A file that would only get new time stamps is not written, so a job that runs every hour does not write it every
/// hour. The file of --output is always written.
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

/// FILE named as the output would be replaced without its lock, and without a check that it is still the same.
void RequireAnotherFile(const std::string& file, const std::string& output)
{
    if (AreSameFile(file, output)) {
        throw FileFailure(ExitCode::Usage, output, "is FILE itself; leave out --output to replace it");
    }
}

/// Writes the document to a stream: the bytes that a file would get, in the document's own encoding. The component
/// writes files only, so a file in a private folder takes the bytes first.
void WriteToStream(PolicyFile& file, std::ostream& out)
{
    const TemporaryFolder folder;
    const std::string path = ToUtf8((folder.Path() / "document.xml").u16string());
    file.Write(path);
    WriteFileTo(out, folder.Path() / "document.xml");
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
        throw FileFailure(ExitCode::Written, *change.written, "was written, but writing to standard output failed");
    }
}

}  // namespace

PolicyFile OpenToEdit(const std::string& file, const EditOptions& options)
{
    if (options.output) {
        RequireAnotherFile(file, *options.output);
        return PolicyFile(file, Access::Copy);
    }
    const std::chrono::seconds patience(options.lockTimeoutSeconds);
    try {
        return PolicyFile(file, patience);
    } catch (const ProblemFailure& failure) {
        Problem problem = failure.What();
        if (problem.code != result::FileLocked) {
            throw;
        }
        problem.message = "another process is editing it; gave up after " + std::to_string(patience.count()) + " s";
        problem.hint = "--lock-timeout";
        throw ShortFailure(problem);
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
