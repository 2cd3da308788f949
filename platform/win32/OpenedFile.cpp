#include "platform/win32/OpenedFile.h"

#include <windows.h>

#include <new>
#include <utility>

#include "platform/win32/Errors.h"
#include "platform/win32/FileBytes.h"
#include "platform/win32/Paths.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

namespace {

/// One byte far beyond the end of any file: a lock keeps others from reading what it covers.
constexpr DWORD kLockedOffsetHigh = 0x7FFFFFFF;

// Waiting at the gate, in milliseconds: who takes the lock can try again, who lets the file go cannot.
constexpr std::uint32_t kWaitOfNewcomer = 20;
constexpr std::uint32_t kWaitOfHolder = 2000;

/// For reading alone: a reader that does not share writing must be able to open the file while it is held.
Handle OpenToHold(const std::u16string& path) noexcept
{
    return OwnFile(
        CreateFileW(Wide(path), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Whether the old file has the name of a backup: ReplaceFileW is replacing it, or its process ended meanwhile.
bool HasBackup(const std::u16string& path)
{
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(Wide(path + u".old-*"), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

/// The same for a name that is looked up for the first time. ReplaceFileW, the last resort of every replacement, may
/// leave the name missing for a moment: SharingViolation then, so that the caller tries again.
result::Code OpenFirst(const std::u16string& path, Handle& file)
{
    constexpr int kAttempts = 4;
    constexpr DWORD kPause = 20;
    for (int i = 0; i < kAttempts; ++i) {
        file = OpenToHold(path);
        if (file != nullptr) {
            return result::Success;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_FILE_NOT_FOUND) {
            return CodeFromError(error);
        }
        if (HasBackup(path)) {
            return result::SharingViolation;
        }
        Sleep(kPause);
    }
    return result::FileNotFound;
}

/// Who may not write the file may not replace it either, although its folder's rights would allow it.
result::Code CheckWritable(HANDLE file) noexcept
{
    const Handle writer = OwnFile(ReOpenFile(file, GENERIC_WRITE, kShareAll, 0));
    return writer == nullptr ? CodeFromLastError() : result::Success;
}

Handle OpenFolder(const std::u16string& path, DWORD access, DWORD share) noexcept
{
    return OwnFile(CreateFileW(Wide(path), access | SYNCHRONIZE, share, nullptr, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool IsMissing(DWORD error) noexcept
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

result::Code InformationOf(HANDLE file, BY_HANDLE_FILE_INFORMATION& information) noexcept
{
    return GetFileInformationByHandle(file, &information) == 0 ? CodeFromLastError() : result::Success;
}

result::Code IdentityOf(HANDLE file, FileIdentity& identity) noexcept
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (const result::Code code = InformationOf(file, information); code < 0) {
        return code;
    }
    identity.volume = information.dwVolumeSerialNumber;
    identity.index = (std::uint64_t{information.nFileIndexHigh} << 32U) | information.nFileIndexLow;
    return result::Success;
}

/// A file that is deleted while it is open keeps its name, which nobody can open, until the last handle is closed.
bool IsBeingDeleted(HANDLE file) noexcept
{
    FILE_STANDARD_INFO information{};
    return GetFileInformationByHandleEx(file, FileStandardInfo, &information, sizeof(information)) != 0 &&
           information.DeletePending != 0;
}

result::Code ReadAccessList(HANDLE file, std::vector<std::byte>& list)
{
    DWORD needed = 0;
    GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, nullptr, 0, &needed);
    DWORD error = GetLastError();
    // Again when the list has grown meanwhile.
    while (error == ERROR_INSUFFICIENT_BUFFER) {
        list.resize(needed);
        if (GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, list.data(), needed, &needed) != 0) {
            return result::Success;
        }
        error = GetLastError();
    }
    list.clear();
    const bool hasNone = error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION;
    return hasNone ? result::Success : CodeFromError(error);
}

}  // namespace

result::Code OpenedFile::Open(std::u16string_view path)
{
    std::u16string full;
    if (const result::Code code = FullPath(path, full); code < 0) {
        return code;
    }
    if (NamesDevice(full)) {
        return result::NotSupported;
    }
    if (const result::Code code = OpenFirst(full, m_file); code < 0) {
        return code;
    }
    const result::Code code = HoldOpened();
    // It existed a moment ago: somebody replaces it.
    return code == result::FileNotFound ? result::SharingViolation : code;
}

/// Inspects the file that was just opened, and holds its folder.
result::Code OpenedFile::HoldOpened()
{
    if (GetFileType(m_file.get()) != FILE_TYPE_DISK) {
        return result::NotSupported;
    }
    if (const result::Code code = CheckWritable(m_file.get()); code < 0) {
        return code;
    }
    if (const result::Code code = IdentityOf(m_file.get(), m_identity); code < 0) {
        return code;
    }
    if (const result::Code code = InspectTarget(); code < 0) {
        return code;
    }
    return HoldFolder();
}

/// Holds the folder that the file lies in now. SharingViolation when the file is no longer in it, or the folder is in
/// somebody's way: the caller tries again.
result::Code OpenedFile::HoldFolder()
{
    std::u16string real;
    if (const result::Code code = FinalPath(m_file.get(), real); code < 0) {
        return code;
    }
    const std::u16string folder = FolderOf(real);
    const std::u16string name = real.substr(folder.size());
    constexpr DWORD kShareNoDeletion = FILE_SHARE_READ | FILE_SHARE_WRITE;
    // Rights that count for sharing, unlike that to read attributes; who may not list may perhaps pass through.
    m_folder = OpenFolder(folder, FILE_LIST_DIRECTORY, kShareNoDeletion);
    if (m_folder == nullptr && GetLastError() == ERROR_ACCESS_DENIED) {
        m_folder = OpenFolder(folder, FILE_TRAVERSE, kShareNoDeletion);
    }
    if (m_folder == nullptr) {
        const DWORD error = GetLastError();
        return IsMissing(error) ? result::SharingViolation : CodeFromError(error);
    }
    if (const result::Code code = FinalPath(m_folder.get(), m_target.path); code < 0) {
        return code;
    }
    if (!m_target.path.ends_with(u'\\')) {
        m_target.path += u'\\';
    }
    m_target.path += name;
    const result::Code code = CheckName();
    return code == result::FileChanged ? result::SharingViolation : code;
}

/// Success when the name means the held file; FileChanged when it means another one or none.
result::Code OpenedFile::CheckName() const
{
    if (IsBeingDeleted(m_file.get())) {
        return result::FileChanged;
    }
    const Handle named =
        OwnFile(CreateFileW(Wide(m_target.path), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (named == nullptr) {
        const DWORD error = GetLastError();
        return IsMissing(error) ? result::FileChanged : CodeFromError(error);
    }
    FileIdentity found;
    if (const result::Code code = IdentityOf(named.get(), found); code < 0) {
        return code;
    }
    return found == m_identity ? result::Success : result::FileChanged;
}

result::Code OpenedFile::TryLock()
{
    m_wantsLock = true;
    if (const result::Code code = HoldAgain(); code < 0) {
        return code;
    }
    return CheckName();
}

/// Opens the file again after it was let go. FileChanged when its name means another one or none.
result::Code OpenedFile::Reopen()
{
    if (m_file != nullptr) {
        return result::Success;
    }
    Handle file = OpenToHold(m_target.path);
    if (file == nullptr) {
        const DWORD error = GetLastError();
        return IsMissing(error) ? result::FileChanged : CodeFromError(error);
    }
    FileIdentity found;
    if (const result::Code code = IdentityOf(file.get(), found); code < 0) {
        return code;
    }
    if (found != m_identity) {
        return result::FileChanged;
    }
    m_file = std::move(file);
    return result::Success;
}

/// Has the file open, and locked if it was to be locked.
result::Code OpenedFile::HoldAgain()
{
    if (const result::Code code = Reopen(); code < 0) {
        return code;
    }
    if (!m_wantsLock || m_isLocked) {
        return result::Success;
    }
    ReplacementGate gate;
    // Whoever has the gate has let the file go for a move, or is just taking the lock.
    if (!m_gate.IsEntered() && !gate.Enter(m_identity, kWaitOfNewcomer)) {
        return result::FileLocked;
    }
    return Lock();
}

result::Code OpenedFile::Lock()
{
    OVERLAPPED place{};
    place.OffsetHigh = kLockedOffsetHigh;
    m_isLocked = LockFileEx(m_file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
    if (m_isLocked) {
        return result::Success;
    }
    switch (const DWORD error = GetLastError()) {
        case ERROR_LOCK_VIOLATION:
        case ERROR_IO_PENDING:
            return result::FileLocked;
        case ERROR_INVALID_FUNCTION:
            return result::NotSupported;
        default:
            return CodeFromError(error);
    }
}

void OpenedFile::LetGo() noexcept
{
    if (m_isLocked) {
        // Without the gate, when somebody blocks it, the move may still succeed.
        static_cast<void>(m_gate.Enter(m_identity, kWaitOfHolder));
    }
    Release();
}

void OpenedFile::Release() noexcept
{
    if (m_isLocked) {
        // Closing ends a lock too, but the system may take its time.
        OVERLAPPED place{};
        place.OffsetHigh = kLockedOffsetHigh;
        UnlockFileEx(m_file.get(), 0, 1, 0, &place);
        m_isLocked = false;
    }
    m_file = nullptr;
}

result::Code OpenedFile::Read(std::string& bytes)
{
    const result::Code code = Reopen();
    return code < 0 ? code : ReadAll(m_file.get(), bytes);
}

result::Code OpenedFile::CheckUnchanged(RepeatableBytes& expected)
{
    if (const result::Code code = Reopen(); code < 0) {
        return code;
    }
    const result::Code code = CheckName();
    return code < 0 ? code : Compare(m_file.get(), expected);
}

/// Inspects what the new file takes over from the held one. AccessDenied when it may not be written by now.
result::Code OpenedFile::InspectTarget()
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (const result::Code code = InformationOf(m_file.get(), information); code < 0) {
        return code;
    }
    if ((information.dwFileAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return result::AccessDenied;
    }
    m_target.exists = true;
    m_target.attributes = information.dwFileAttributes;
    return ReadAccessList(m_file.get(), m_target.security);
}

/// Whether the folder takes a new file, and one in it may be replaced.
result::Code OpenedFile::CheckFolder() const
{
    const std::u16string folder = FolderOf(m_target.path);
    // Somebody who has the folder open exclusively is no obstacle to files in it.
    if (OpenFolder(folder, FILE_ADD_FILE, kShareAll) == nullptr && GetLastError() != ERROR_SHARING_VIOLATION) {
        return CodeFromLastError();
    }
    // The right to delete the file, or to delete in its folder, is enough.
    const Handle file = OwnFile(CreateFileW(Wide(m_target.path), DELETE, kShareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (file == nullptr && GetLastError() == ERROR_ACCESS_DENIED &&
        OpenFolder(folder, FILE_DELETE_CHILD, kShareAll) == nullptr && GetLastError() == ERROR_ACCESS_DENIED) {
        return result::AccessDenied;
    }
    return result::Success;
}

result::Code OpenedFile::RehearseReplace()
{
    m_expected = nullptr;
    const result::Code code = PrepareTarget();
    return code < 0 ? code : CheckFolder();
}

/// Holds the file again and compares it, if it is to be compared; otherwise it need not exist any more.
result::Code OpenedFile::PrepareMove()
{
    const result::Code code = HoldAgain();
    m_gate.Leave();
    if (m_expected == nullptr) {
        return code == result::FileChanged ? result::Success : code;
    }
    return code < 0 ? code : CheckUnchanged(*m_expected);
}

/// Gets ready for a replacement; a file that is gone for good is replaced with what was last known of it.
result::Code OpenedFile::PrepareTarget()
{
    const result::Code code = PrepareMove();
    return code < 0 || m_file == nullptr ? code : InspectTarget();
}

result::Code OpenedFile::Replace(ByteSource& bytes, RepeatableBytes* expected)
{
    m_expected = expected;
    // Also before anything is written: a new file that cannot be moved into place is useless.
    if (const result::Code code = PrepareTarget(); code < 0) {
        return code;
    }
    result::Code code = result::OutOfMemory;
    try {
        code = ReplaceHeld(m_target, bytes, *this);
    } catch (const std::bad_alloc&) {
        code = result::OutOfMemory;
    }
    if (code < 0 && code != result::WrittenNotFlushed) {
        // The replacement has failed, whatever this gives; the next call tries again.
        static_cast<void>(HoldAgain());
    }
    m_gate.Leave();
    return code;
}

}  // namespace zupm::win32
