/// A file that gets other bytes as a whole, under the lock that every editor takes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace zupm::tool {

/// A file that is open and locked. It need not be a policy file: a broken one can be replaced too.
///
/// Links     A link at the end of the path stays, and the file at its end is replaced. Natively one that somebody else
///           planted in a folder like /tmp is refused.
/// Lifetime  The lock ends with Replace and with the object.
/// Errors    Throws Failure: Locked; FileError; Changed when the file is no longer the one that was opened, or has
///           other bytes than expected; Written when the new file is in place and its folder could not be flushed.
class LockedFile {
public:
    /// Waits up to `patience` for another editor.
    LockedFile(std::string path, std::chrono::milliseconds patience);
    ~LockedFile();
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    [[nodiscard]] std::string Read() const;
    /// Throws what Replace would throw, as far as that can be known without a new file.
    void Rehearse() const;
    /// Replaces the file in one step and keeps its rights (natively also owner and attributes). `expected` are the
    /// bytes that it must still have; null: any.
    void Replace(std::string_view bytes, const std::string* expected);

private:
    struct Handles;

    /// Opens the file and takes its lock; false while another editor has it, or has just replaced the file.
    [[nodiscard]] bool TryLock();
    void WaitUntilLocked(std::chrono::milliseconds patience);
    /// Whether the name still means the file that is open.
    [[nodiscard]] bool IsInPlace() const;
    void RequireUnchanged(const std::string* expected) const;

    std::string m_path;
    std::unique_ptr<Handles> m_handles;
};

/// Writes a file of the tool's own in one step: what is at the path is replaced as LockedFile does, or a file is
/// created. No lock is taken. What is no regular file, such as a pipe, is refused. Throws Failure (FileError).
void WriteWhole(const std::string& path, std::string_view bytes);

}  // namespace zupm::tool
