/// Arguments and options that several commands have in common.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/Streams.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zupm::tool {

/// How every command that writes a policy file does it.
struct WriteOptions {
    bool dryRun = false;
    bool force = false;
    bool json = false;
    bool diff = false;
    bool quiet = false;
    bool verbose = false;
    std::string backupSuffix;  ///< empty for no backup
    unsigned lockTimeoutSeconds = 10;
    Redaction hidden;
};

/// Where and how `set` and `remove` write their result.
struct EditOptions : WriteOptions {
    std::optional<std::string> output;

    /// A file of this name can be written as ./-
    [[nodiscard]] bool GoesToStandardOutput() const { return output == "-"; }
};

// Each declares its arguments and options; what it stores into must live until the line is parsed.
void AddFile(CLI::App& line, std::string& file);
void AddTarget(CLI::App& line, Target& target);
void AddJson(CLI::App& line, bool& json);
/// -q, --quiet; not together with --json, which is declared before it.
void AddQuiet(CLI::App& line, bool& quiet, const char* description);
/// Calls `look`, which throws when something is not in the file. Only the exit code says so.
[[nodiscard]] ExitCode Quietly(const std::function<void()>& look);
/// The number of threads, whose default stays when the option is missing.
void AddJobs(CLI::App& line, unsigned& jobs, const char* description);
void AddLockTimeout(CLI::App& line, unsigned& seconds);
/// After a report about a file that is written: throws Failure (Written) when the report could not be printed.
void RequirePrinted(Streams streams, const std::string& written);
/// Where a page goes; "-" is standard output.
CLI::Option* AddPageOutput(CLI::App& line, std::string& output);
/// A suffix is part of a name: a backup always lies beside its file. Throws the parser's error.
void RequireSuffix(const std::string& suffix);
/// All of WriteOptions but the backup.
void AddWrite(CLI::App& line, WriteOptions& write);
void AddBackup(CLI::App& line, WriteOptions& write);
/// The parser refuses options that exclude each other.
void AddEdit(CLI::App& line, EditOptions& edit);
/// What the callback of AddEdit requires, for a command with a callback of its own. Throws the parser's error.
void RequireConsistent(const EditOptions& edit);

}  // namespace zupm::tool
