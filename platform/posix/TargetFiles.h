/// What posix/ needs of the system beyond POSIX.1-2008 (with XSI). A port to another POSIX system writes a folder
/// beside linux/ with TargetCalls.h (what its table of system calls has besides POSIX), these functions, CopyMetadata
/// (FileMetadata.h), OwnModulePath (platform/Modules.h), TrustedEnvironmentVariable (platform/LogOutput.h) and the
/// table of system calls (SystemCalls.h).
#pragma once

#include <csignal>
#include <cstddef>
#include <span>
#include <string>

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Opens a folder below an open folder (or AT_FDCWD) to name files in it: that takes the right to search it, not to
/// list it. The handle owns nothing, with errno, on failure.
[[nodiscard]] FileHandle OpenToSearch(int folder, const char* path) noexcept;

/// Opens what a name in a folder means: a symbolic link itself, not what it leads to. It can be asked for its status
/// and its target, which are then of one link, whatever gets the name meanwhile. The handle owns nothing, with errno,
/// on failure.
[[nodiscard]] FileHandle OpenLink(int folder, const char* name) noexcept;

/// Where a link that OpenLink opened leads. NameTooLong, or the code of the failed call.
[[nodiscard]] result::Code ReadOpenLink(const FileHandle& link, std::string& target);

/// Makes a new file in a folder, for its owner alone, that has no name and leaves no trace. Success with a handle that
/// owns nothing when the file system has no such files; otherwise the code of the failed call.
[[nodiscard]] result::Code CreateNameless(int folder, FileHandle& file) noexcept;

/// Takes the write lock of an open file without waiting. It belongs to the open file, not to the process: two objects
/// of one process exclude each other, closing another handle of the file does not end it, and a handle that was opened
/// for reading alone cannot take it. FileLocked: another holder has it. Otherwise the code of the failed call.
[[nodiscard]] result::Code TryWriteLock(const FileHandle& file) noexcept;

/// Waits for the lock that whoever may open the file can take; closing the file gives it up. The code of the failed
/// call.
[[nodiscard]] result::Code WaitForLock(const FileHandle& file) noexcept;

/// Fills `bytes` with what nobody can know beforehand; false, with errno, when the system has no random bytes.
[[nodiscard]] bool FillWithRandomBytes(std::span<unsigned char> bytes) noexcept;

/// Asks the system for large pages where nobody has written yet: from 2 to 32 MiB of memory. The answer changes
/// nothing except how long the first writing takes.
void PreferLargePages(void* memory, std::size_t size) noexcept;

/// Takes the pending signals of a set from the calling thread, which blocks them, without waiting.
void DropPendingSignals(const sigset_t& signals) noexcept;

}  // namespace zupm::native
