/// The file that a command is going to write.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "file/LockFile.h"

namespace zupm::tool {

/// A file that other processes may want to write, too: locked against further runs of the tool from before it is read
/// until it is written, and remembered, so that a change by anything else is noticed.
///
/// Lifetime  The lock is held as long as the object lives. A device or pipe is neither locked nor remembered.
class WriteTarget {
public:
    /// Waits for the lock up to `patience`. Throws Failure: Locked when that is over, FileError when there can be no
    /// lock file.
    WriteTarget(const std::string& path, std::chrono::milliseconds patience);

    [[nodiscard]] const std::string& Path() const noexcept { return m_path; }

    /// Throws Failure (Changed) when the file holds other bytes than at the beginning, or has come or gone since.
    void RequireUnchanged() const;

private:
    void Lock(const std::filesystem::path& lockFile, std::chrono::milliseconds patience);

    std::string m_path;
    std::filesystem::path m_file;  ///< behind symbolic links
    std::optional<LockFile> m_lock;
    std::optional<std::string> m_before;
};

}  // namespace zupm::tool
