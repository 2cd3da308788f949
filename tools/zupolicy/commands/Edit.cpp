#include "tools/zupolicy/commands/Edit.h"

#include <chrono>
#include <ostream>
#include <string>
#include <utility>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/FileText.h"
#include "tools/zupolicy/report/Change.h"
#include "tools/zupolicy/report/Colour.h"
#include "tools/zupolicy/report/Json.h"
#include "tools/zupolicy/report/UnifiedDiff.h"

namespace zupm::tool {
namespace {

void CommitAlone(PolicyFile& file, const EditOptions& options)
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

/// Replaces the file, with a backup when one is wanted. A backup of a file that was not replaced goes again.
void Commit(PolicyFile& file, Change& change, const EditOptions& options)
{
    if (options.backupSuffix.empty()) {
        CommitAlone(file, options);
        return;
    }
    change.backup = WriteBackup(file.Path(), options.backupSuffix);
    try {
        CommitAlone(file, options);
    } catch (const ProblemFailure& failure) {
        if (failure.What().code != result::WrittenNotFlushed) {
            RemoveBackup(*change.backup);
        }
        throw;
    } catch (...) {
        RemoveBackup(*change.backup);
        throw;
    }
}

/// Throws what Commit would throw, as far as that can be known without writing.
void Rehearse(PolicyFile& file, const EditOptions& options)
{
    if (!options.backupSuffix.empty()) {
        RehearseBackup(file.Path(), options.backupSuffix);
    }
    file.RehearseCommit(options.force);
}

/// A file that would only get new time stamps is not written, so a job that runs every hour does not write it every
/// hour. The file of --output is always written.
void Write(PolicyFile& file, Change& change, const EditOptions& options)
{
    if (options.output) {
        file.Write(*options.output);
        change.written = *options.output;
    } else if (change.changed) {
        Commit(file, change, options);
        change.written = file.Path();
    }
}

/// FILE named as the output would be replaced without its lock, and without a check that it is still the same.
void RequireAnotherFile(const std::string& file, const std::string& output)
{
    if (AreSameFile(file, output)) {
        throw Failure(ExitCode::Usage, output, "is FILE itself; leave out --output to replace it");
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

/// "policy.xml: changed", for --verbose.
std::string OutcomeText(const Change& change, const EditOptions& options)
{
    std::string text = change.file + ": " + (options.dryRun && change.changed ? "would be " : "") +
                       (change.changed ? "changed" : "unchanged");
    if (options.output && !options.dryRun) {
        text += options.GoesToStandardOutput() ? ", written to standard output" : ", written to " + *options.output;
    }
    return text + (change.backup ? ", backup " + *change.backup : "");
}

void PrintNotes(const Change& change, const EditOptions& options, Streams streams)
{
    for (const std::string& note : change.notes) {
        if (!options.quiet) {
            streams.messages.Line(note);
        }
    }
}

void Print(const Change& change, const EditOptions& options, Streams streams)
{
    if (options.verbose) {
        streams.messages.Line(OutcomeText(change, options));
    }
    // Made in any case: of a change that is not printed, too, a pattern of --redact may hide nothing.
    const std::string text = ChangeAsText(change, options.hidden);
    if (options.json) {
        WriteChangeAsJson(streams.data, change, options.hidden);
    } else if (change.diff) {
        WriteDiff(streams.data, *change.diff, HasColour(StandardStream::Output));
    } else if (options.dryRun && !options.quiet) {
        streams.data << text;
    }
    if (change.written) {
        RequirePrinted(streams, *change.written);
    }
}

/// The difference between FILE and what is written.
std::string DiffOf(PolicyFile& file, const EditOptions& options)
{
    const TemporaryFolder folder;
    const std::string path = ToUtf8((folder.Path() / "document.xml").u16string());
    file.Write(path);
    const Redaction& redaction = options.hidden;
    return Difference(file.Path(), options.output.value_or(file.Path()), TextOfFile(file.Path(), redaction),
                      TextOfFile(path, redaction), options.json ? Form::Exact : Form::Visible);
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
    change.file = file.Path();
    if (options.GoesToStandardOutput()) {
        WriteToStream(file, streams.data);
        PrintNotes(change, options, streams);
        if (options.verbose) {
            streams.messages.Line(OutcomeText(change, options));
        }
        return;
    }
    if (options.diff) {
        change.diff = change.changed ? DiffOf(file, options) : "";
    }
    if (!options.dryRun) {
        Write(file, change, options);
    } else if (!options.output && change.changed) {
        Rehearse(file, options);
    }
    PrintNotes(change, options, streams);
    Print(change, options, streams);
}

}  // namespace zupm::tool
