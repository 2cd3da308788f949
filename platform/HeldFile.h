/// A file that is edited in place: opened once, locked, read, compared and replaced through what was opened.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// A regular file and the folder that it lies in, both held open, so that its path is looked up once and never again.
///
/// Links     One that the path ends with is followed where the system follows it for everybody: in a folder
///           that anybody may write and that protects its files (sticky), only a link of the caller or of the folder's
///           owner. Natively any other link there is AccessDenied. The link stays; the file at its end is opened,
///           locked and replaced.
/// Lifetime  The lock and the handles end with the object, with Close, and with the process.
/// Threads   None of its own: one thread at a time.
class HeldFile {
public:
    HeldFile() noexcept;
    ~HeldFile();
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    HeldFile(HeldFile&& other) noexcept;
    HeldFile& operator=(HeldFile&& other) noexcept;

    /// Opens the file for reading and writing, and its folder; whatever was held before is closed first. Never waits
    /// for another end of what is no regular file. FileNotFound, PathNotFound, AccessDenied (also for a folder),
    /// WriteProtected, NotSupported (no regular file), SharingViolation (a process keeps writers out at the moment),
    /// InvalidName, NameTooLong, TooManyOpenFiles, InputOutputError, OutOfMemory. Nothing is held after a failure.
    [[nodiscard]] result::Code Open(std::u16string_view path) noexcept;
    void Close() noexcept;
    [[nodiscard]] bool IsOpen() const noexcept { return m_handles != nullptr; }

    /// Takes the file's lock, which whoever may write the file can take. It leaves nothing on disk.
    /// FileLocked: another holder has it. FileChanged: it was taken, but the name now means another file, or none:
    /// open again. NotSupported: the file system has no locks. Or the code of the failed call.
    [[nodiscard]] result::Code TryLock() noexcept;

    /// Reads the whole file into `bytes` (left empty on failure). FileTooLarge (asked before a byte is read),
    /// InputOutputError, OutOfMemory.
    [[nodiscard]] result::Code Read(std::string& bytes) noexcept;

    /// Success when the name in the folder still means this file and the file holds the expected bytes and no more;
    /// FileChanged otherwise, or the code of the failed call. The file is read in pieces. OutOfMemory when the bytes
    /// throw.
    [[nodiscard]] result::Code CheckUnchanged(RepeatableBytes& expected) noexcept;
    [[nodiscard]] result::Code CheckUnchanged(std::string_view expected) noexcept
    {
        OnePiece piece(expected);
        return CheckUnchanged(piece);
    }

    /// Does as much of Replace as can be done without a trace: the code that Replace would fail with when the folder
    /// takes no new file, or the file's owner and rights cannot be kept. Not foreseen are a full disk and what only
    /// renaming meets (somebody else's file in a sticky folder, a mount point).
    [[nodiscard]] result::Code RehearseReplace() noexcept;

    /// Replaces the file in one step, as ReplaceFileAtomically does. With `expected`, only if CheckUnchanged holds once
    /// the new bytes are on the disk: FileChanged otherwise. Without, whatever has the name by then is replaced.
    /// The codes of ReplaceFileAtomically, with the file as it was; WrittenNotFlushed when the new file is in place and
    /// the folder could not be flushed; OwnerNotKept when its owner or group may not be given to a new file.
    [[nodiscard]] result::Code Replace(ByteSource& bytes, RepeatableBytes* expected,
                                       Durability durability = Durability::Flushed) noexcept;
    [[nodiscard]] result::Code Replace(std::string_view bytes, const std::string* expected,
                                       Durability durability = Durability::Flushed) noexcept
    {
        OnePiece piece(bytes);
        OnePiece old(expected == nullptr ? std::string_view() : *expected);
        return Replace(piece, expected == nullptr ? nullptr : &old, durability);
    }

private:
    struct Handles;
    std::unique_ptr<Handles> m_handles;
};

/// Whether trying again may help: somebody edits the file, keeps writers out, or has just replaced it.
[[nodiscard]] bool MayPass(result::Code code) noexcept;

/// Opens the file and takes its lock, again and again for up to `patience` while somebody else has it, keeps writers
/// out or has just replaced the file. The codes of HeldFile::Open and TryLock; FileLocked when the lock was never free.
/// What is open after a failure has no lock: after NotSupported the file, when only its file system has no locks.
[[nodiscard]] result::Code OpenLocked(std::u16string_view path, std::chrono::milliseconds patience,
                                      HeldFile& file) noexcept;

}  // namespace zupm
