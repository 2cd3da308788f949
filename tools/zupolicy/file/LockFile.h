/// The lock file beside a file that is edited.
#pragma once

#include <cstdint>
#include <filesystem>

namespace zupm::tool {

/// An open lock file. The lock is the system's own: it ends with the process, however that ends. The file stays, empty:
/// removing it would part two processes that hold it open from a third that makes a new one.
///
/// Invariant Nothing is ever written into the file and no link is followed to it, so a planted one can do no harm.
class LockFile {
public:
    /// Opens or creates the lock file at `path` for the file `guarded`, which need not exist. Whoever may write that
    /// file may use a new lock file. Throws std::system_error.
    LockFile(const std::filesystem::path& path, const std::filesystem::path& guarded);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    /// Takes the lock, unless another process has it. Throws std::system_error.
    [[nodiscard]] bool TryLock();

    /// The process that has the lock; 0 when the system does not tell.
    [[nodiscard]] std::uint64_t Holder() const;

private:
    std::intptr_t m_file;  ///< the system's own handle
};

}  // namespace zupm::tool
