/// How a command ends: its exit code, and the failure that ends it early.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace zupm::tool {

/// Exit codes of the process; `zupolicy --help` and docs/zupolicy.md list the same numbers.
enum class ExitCode : int {
    Ok = 0,
    NotFound = 1,   ///< The policy, task, section or setting is not in the file.
    Usage = 2,      ///< The command line is wrong.
    FileError = 3,  ///< A file cannot be read, parsed or written.
    Other = 4,      ///< Anything else that failed.
    Changed = 5,    ///< Another program changed the file in the meantime.
    Locked = 6,     ///< Another process held the lock of the file for too long.
    Written = 7,    ///< The file is written, but a later step failed.
};

/// A failure that ends the command: one line for the administrator, and the exit code.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), m_code(code) {}
    /// About a file: the line is "file: message".
    Failure(ExitCode code, std::string file, const std::string& message)
        : std::runtime_error(file + ": " + message), m_code(code), m_file(std::move(file))
    {
    }

    [[nodiscard]] ExitCode Code() const noexcept { return m_code; }
    /// The file that it is about; may be empty.
    [[nodiscard]] const std::string& File() const noexcept { return m_file; }

private:
    ExitCode m_code;
    std::string m_file;
};

}  // namespace zupm::tool
