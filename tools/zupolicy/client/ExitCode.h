/// How the tool ends.
#pragma once

namespace zupm::tool {

/// Exit codes of the process; `zupolicy --help` and docs/zupolicy.md list the same numbers.
enum class ExitCode : int {
    Ok = 0,
    NotFound = 1,   ///< The policy, task, section or setting is not in the file.
    Usage = 2,      ///< The command line is wrong.
    FileError = 3,  ///< A file cannot be read, parsed or written.
    Other = 4,      ///< Anything else that failed.
    Changed = 5,    ///< The file was changed by something else meanwhile.
    Locked = 6,     ///< Another process was editing the file for too long.
    Written = 7,    ///< The file is written, but something failed afterwards.
};

}  // namespace zupm::tool
