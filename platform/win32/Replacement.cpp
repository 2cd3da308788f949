#include "platform/win32/Replacement.h"

#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/win32/Errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Paths.h"
#include "platform/win32/RenameOver.h"
#include "platform/win32/UnguessableName.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

namespace {

constexpr std::uint32_t kLongestWait = 1000;
constexpr DWORD kKeptAttributes =
    FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
constexpr std::size_t kPiece = std::size_t{16} << 20;
/// Units in a file's name.
constexpr std::size_t kLongestName = 255;

result::Code WriteAll(HANDLE file, std::string_view bytes) noexcept
{
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), kPiece));
        if (WriteFile(file, bytes.data(), piece, &written, nullptr) == 0) {
            return CodeFromLastError();
        }
        if (written == 0) {
            return result::DiskFull;
        }
        bytes.remove_prefix(written);
    }
    return result::Success;
}

result::Code WriteAll(HANDLE file, ByteSource& bytes)
{
    for (std::string_view piece = bytes.Next(); !piece.empty(); piece = bytes.Next()) {
        if (const result::Code code = WriteAll(file, piece); code < 0) {
            return code;
        }
    }
    return result::Success;
}

/// Devices and pipes cannot be replaced: the bytes go into them.
result::Code WriteDirectly(const std::u16string& path, ByteSource& bytes)
{
    const Handle file = OwnFile(
        CreateFileW(Wide(path), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file == nullptr ? CodeFromLastError() : WriteAll(file.get(), bytes);
}

/// Follows symbolic links, so that the link stays and the file that it names is replaced.
result::Code FollowLinks(Target& target)
{
    const Handle file = OwnFile(CreateFileW(Wide(target.path), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (file == nullptr) {
        return CodeFromLastError();
    }
    if (const result::Code code = FinalPath(file.get(), target.path); code < 0) {
        return code;
    }
    target.attributes = GetFileAttributesW(Wide(target.path));
    return target.attributes == INVALID_FILE_ATTRIBUTES ? CodeFromLastError() : result::Success;
}

/// A list that exists and cannot be read is a refusal: without it more people might read the new file than the old.
result::Code ReadAccessList(Target& target)
{
    for (;;) {
        DWORD needed = 0;
        const auto size = static_cast<DWORD>(target.security.size());
        if (GetFileSecurityW(Wide(target.path), DACL_SECURITY_INFORMATION, target.security.data(), size, &needed) !=
            0) {
            return result::Success;
        }
        const DWORD error = GetLastError();
        if (error == ERROR_INSUFFICIENT_BUFFER && needed > size) {
            target.security.resize(needed);
            continue;
        }
        target.security.clear();
        return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION ? result::Success : CodeFromError(error);
    }
}

/// A file that may not be written may not be replaced either, although the folder's rights would allow it.
result::Code CheckWritable(const Target& target) noexcept
{
    if ((target.attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return result::AccessDenied;
    }
    const Handle file = OwnFile(CreateFileW(Wide(target.path), FILE_WRITE_DATA, kShareAll, nullptr, OPEN_EXISTING,
                                            FILE_ATTRIBUTE_NORMAL, nullptr));
    // A reader that shares deletion but not writing is no obstacle: the replacement itself decides.
    if (file == nullptr && GetLastError() != ERROR_SHARING_VIOLATION) {
        return CodeFromLastError();
    }
    return result::Success;
}

result::Code Inspect(Target& target)
{
    if (NamesDevice(target.path)) {
        target.isRegular = false;
        return result::Success;
    }
    target.attributes = GetFileAttributesW(Wide(target.path));
    if (target.attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND ? result::Success : CodeFromError(error);
    }
    target.exists = true;
    if ((target.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        if (const result::Code code = FollowLinks(target); code < 0) {
            return code;
        }
    }
    if (const result::Code code = CheckWritable(target); code < 0) {
        return code;
    }
    return ReadAccessList(target);
}

/// The new text in a file of its own beside the target.
///
/// Lifetime  The file is deleted with the object unless Keep was called.
class Temporary {
public:
    Temporary() = default;
    ~Temporary()
    {
        if (!m_path.empty()) {
            DeleteFileW(Wide(m_path));
        }
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    /// Creates the file with the target's access list from the start, so that nobody reads it who may not read the
    /// target, and brings the bytes to the disk.
    [[nodiscard]] result::Code Write(Target& target, ByteSource& bytes);

    void Keep() noexcept { m_path.clear(); }
    [[nodiscard]] const std::u16string& Path() const noexcept { return m_path; }

private:
    std::u16string m_path;
};

result::Code Temporary::Write(Target& target, ByteSource& bytes)
{
    std::u16string name;
    if (const result::Code code = UnguessableName(name); code < 0) {
        return code;
    }
    std::u16string path = FolderOf(target.path) + name;
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), target.security.data(), FALSE};
    Handle file = OwnFile(CreateFileW(Wide(path), GENERIC_WRITE, 0, target.security.empty() ? nullptr : &attributes,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file == nullptr) {
        return CodeFromLastError();
    }
    m_path = std::move(path);
    if (const result::Code code = WriteAll(file.get(), bytes); code < 0) {
        return code;
    }
    if (FlushFileBuffers(file.get()) == 0) {
        return CodeFromLastError();
    }
    file.reset();
    if (target.exists && (target.attributes & kKeptAttributes) != 0) {
        SetFileAttributesW(Wide(m_path), target.attributes & kKeptAttributes);
    }
    return result::Success;
}

/// True for the errors of a file that another process has open at the moment (a scanner, a backup, a reader that does
/// not share deletion).
bool MayPass(DWORD error) noexcept
{
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_UNABLE_TO_REMOVE_REPLACED || error == ERROR_USER_MAPPED_FILE;
}

/// One attempt in one step: readers find the old file or the new one. ERROR_SUCCESS or why not.
DWORD MoveOver(const Target& target, const Temporary& temporary) noexcept
{
    const bool isMoved =
        MoveFileExW(Wide(temporary.Path()), Wide(target.path), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    return isMoved ? ERROR_SUCCESS : GetLastError();
}

/// The name of the old file while ReplaceFileW works: its own with an ending. A process that is killed then can leave
/// the old file under that name alone, so it says which file it was and is not that of a temporary, which may be
/// deleted.
result::Code BackupPath(const std::u16string& target, std::u16string& path)
{
    constexpr std::u16string_view kEnding = u".old-";
    constexpr std::size_t kDigits = 32;
    path = FolderOf(target);
    path += target.substr(path.size(), kLongestName - kEnding.size() - kDigits);
    path += kEnding;
    return AppendUnguessable(path);
}

/// Gives the old file its name back after a replacement that failed half-way, waiting for who may hold it just now.
/// What does not succeed leaves it under the backup name.
void RestoreBackup(const std::u16string& backup, const std::u16string& target) noexcept
{
    Patience patience;
    while (MoveFileExW(Wide(backup), Wide(target), MOVEFILE_WRITE_THROUGH) == 0 && MayPass(GetLastError()) &&
           patience.Wait()) {
    }
}

/// For a target that somebody keeps open: works beside readers that share deletion, but may leave the name missing for
/// a moment. The old file gets a backup name of ours: without one a replacement that fails half-way would lose it, or
/// leave it under a name that nobody knows.
DWORD ReplaceHeldFile(const Target& target, const Temporary& temporary)
{
    std::u16string backup;
    if (BackupPath(target.path, backup) < 0) {
        return ERROR_SHARING_VIOLATION;
    }
    const bool isReplaced =
        ReplaceFileW(Wide(target.path), Wide(temporary.Path()), Wide(backup), 0, nullptr, nullptr) != 0;
    const DWORD error = isReplaced ? ERROR_SUCCESS : GetLastError();
    if (isReplaced || GetFileAttributesW(Wide(target.path)) != INVALID_FILE_ATTRIBUTES) {
        DeleteFileW(Wide(backup));
    } else {
        RestoreBackup(backup, target.path);
    }
    return error;
}

/// One attempt beside a holder and perhaps others who have the target open.
DWORD MoveOverHeld(const Target& target, const Temporary& temporary, TargetHolder& holder)
{
    const DWORD error = RenameOverOpenFile(temporary.Path(), target.path);
    // Somebody else blocks it, and would block any other call too.
    if (error == ERROR_SUCCESS || error == ERROR_SHARING_VIOLATION || error == ERROR_USER_MAPPED_FILE) {
        return error;
    }
    // The holder's lock ends here. An editor that takes it before the move loads the old file, and finds it changed
    // when it replaces it; or its open file makes the move fail, and this replacement ends.
    holder.LetGo();
    return MoveOver(target, temporary);
}

result::Code Prepare(TargetHolder* holder)
{
    return holder == nullptr ? result::Success : holder->PrepareMove();
}

result::Code MoveIntoPlace(const Target& target, Temporary& temporary, TargetHolder* holder)
{
    Patience patience;
    DWORD error = ERROR_SUCCESS;
    do {
        if (const result::Code code = Prepare(holder); code < 0) {
            return code;
        }
        error = holder == nullptr ? MoveOver(target, temporary) : MoveOverHeld(target, temporary, *holder);
    } while (error != ERROR_SUCCESS && MayPass(error) && patience.Wait());
    if (error != ERROR_SUCCESS && MayPass(error) && target.exists) {
        if (const result::Code code = Prepare(holder); code < 0) {
            return code;
        }
        error = ReplaceHeldFile(target, temporary);
    }
    if (error != ERROR_SUCCESS) {
        return CodeFromError(error);
    }
    temporary.Keep();
    return result::Success;
}

/// True for the errors of a folder that cannot be flushed: a right is missing, or the file system cannot do it.
bool IsFlushRefused(DWORD error) noexcept
{
    return error == ERROR_ACCESS_DENIED || error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED ||
           error == ERROR_INVALID_PARAMETER;
}

/// Makes the new name survive a loss of power, where the file system can flush a folder. Waits for somebody who has the
/// folder open exclusively: that takes a moment, for a lookup or another replacement.
bool FlushFolder(const std::u16string& folder) noexcept
{
    Patience patience;
    for (;;) {
        const Handle handle = OwnFile(CreateFileW(Wide(folder), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (handle != nullptr && FlushFileBuffers(handle.get()) != 0) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION || !patience.Wait()) {
            return IsFlushRefused(error);
        }
    }
}

result::Code ReplaceRegular(Target& target, ByteSource& bytes, TargetHolder* holder)
{
    // Before the new file is in place: memory that runs out afterwards must not turn success into failure.
    const std::u16string folder = FolderOf(target.path);
    Temporary temporary;
    if (const result::Code code = temporary.Write(target, bytes); code < 0) {
        return code;
    }
    if (const result::Code code = MoveIntoPlace(target, temporary, holder); code < 0) {
        return code;
    }
    return FlushFolder(folder) ? result::Success : result::WrittenNotFlushed;
}

}  // namespace

bool Patience::Wait() noexcept
{
    if (m_waited >= kLongestWait) {
        return false;
    }
    Sleep(m_next);
    m_waited += m_next;
    m_next = std::min(m_next * 2, std::uint32_t{100});
    return true;
}

result::Code ReplaceFull(const std::u16string& full, ByteSource& bytes)
{
    Target target;
    target.path = full;
    if (const result::Code code = Inspect(target); code < 0) {
        return code;
    }
    if (!target.isRegular) {
        return WriteDirectly(target.path, bytes);
    }
    const result::Code code = ReplaceRegular(target, bytes, nullptr);
    // The move itself is written through.
    return code == result::WrittenNotFlushed ? result::Success : code;
}

result::Code ReplaceHeld(Target& target, ByteSource& bytes, TargetHolder& holder)
{
    return ReplaceRegular(target, bytes, &holder);
}

}  // namespace zupm::win32
