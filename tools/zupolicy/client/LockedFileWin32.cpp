#include "tools/zupolicy/client/LockedFile.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/UnguessableName.h"
#include "tools/zupolicy/client/WindowsHandle.h"

namespace zupm::tool {

/// The file, open and locked, and its path at the end of all links.
struct LockedFile::Handles {
    OwnedHandle file;
    std::wstring path;
};

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kKeptAttributes =
    FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

[[noreturn]] void Refuse(const std::string& path, DWORD error = GetLastError())
{
    throw Failure(ExitCode::FileError, path, std::system_category().message(static_cast<int>(error)));
}

void RequireCall(bool succeeded, const std::string& path)
{
    if (!succeeded) {
        Refuse(path);
    }
}

OwnedHandle OpenToEdit(const std::wstring& path)
{
    return OwnedHandle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | READ_CONTROL, kShareAll, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::wstring FinalPath(HANDLE file, const std::string& path)
{
    std::wstring text(32768, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file, text.data(), static_cast<DWORD>(text.size()), 0);
    RequireCall(length != 0 && length < text.size(), path);
    text.resize(length);
    return text;
}

/// The lock is on one byte far beyond the end, which disturbs no reader.
bool TakeLock(HANDLE file)
{
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFF;
    return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
}

/// The access list of a file. Without it more people might read the new file than the old, so a list that cannot be
/// read is a refusal.
std::vector<std::byte> AccessListOf(const std::wstring& file, const std::string& path)
{
    std::vector<std::byte> list;
    for (;;) {
        DWORD needed = 0;
        const auto size = static_cast<DWORD>(list.size());
        if (GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &needed) != 0) {
            return list;
        }
        const DWORD error = GetLastError();
        if (error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION) {
            return {};
        }
        if (error != ERROR_INSUFFICIENT_BUFFER || needed <= size) {
            Refuse(path, error);
        }
        list.resize(needed);
    }
}

/// A path for a temporary file beside the target.
std::wstring PathBeside(const std::wstring& target, const std::string& path)
{
    std::wstring beside = TemporaryBeside(target);
    RequireCall(!beside.empty(), path);
    return beside;
}

/// The new bytes beside the target; the file goes again unless it becomes the target.
class Temporary {
public:
    Temporary(const std::wstring& target, bool exists, std::string_view bytes, const std::string& path)
        : m_name(PathBeside(target, path))
    {
        std::vector<std::byte> rights = exists ? AccessListOf(target, path) : std::vector<std::byte>();
        SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), rights.data(), FALSE};
        OwnedHandle file(CreateFileW(m_name.c_str(), GENERIC_WRITE, 0, rights.empty() ? nullptr : &attributes,
                                     CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        RequireCall(file.IsOpen(), path);
        if (!WriteAll(file.Get(), bytes) || FlushFileBuffers(file.Get()) == 0) {
            const DWORD error = GetLastError();
            file.Close();
            DeleteFileW(m_name.c_str());
            Refuse(path, error);
        }
        const DWORD kept = exists ? GetFileAttributesW(target.c_str()) & kKeptAttributes : 0;
        if (kept != 0) {
            SetFileAttributesW(m_name.c_str(), kept);
        }
    }
    ~Temporary()
    {
        if (!m_isInPlace) {
            DeleteFileW(m_name.c_str());
        }
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    [[nodiscard]] bool MoveTo(const std::wstring& target)
    {
        m_isInPlace =
            MoveFileExW(m_name.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        return m_isInPlace;
    }
    /// Renames over a file that is still open, where the system and the file system can do so.
    [[nodiscard]] bool MoveOverOpenFile(const std::wstring& target);

private:
    std::wstring m_name;
    bool m_isInPlace = false;
};

bool Temporary::MoveOverOpenFile(const std::wstring& target)
{
    // What headers for older systems lack.
    constexpr auto kRenameInformation = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD kReplaceWithPosixSemantics = 3;
    const OwnedHandle file(CreateFileW(m_name.c_str(), DELETE | SYNCHRONIZE, kShareAll, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!file.IsOpen()) {
        return false;
    }
    const std::size_t nameBytes = target.size() * sizeof(wchar_t);
    std::vector<std::byte> space(sizeof(FILE_RENAME_INFO) + nameBytes);
    FILE_RENAME_INFO head{};
    head.FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(space.data(), &head, sizeof(head));
    std::memcpy(space.data(), &kReplaceWithPosixSemantics, sizeof(kReplaceWithPosixSemantics));
    std::memcpy(space.data() + offsetof(FILE_RENAME_INFO, FileName), target.data(), nameBytes);
    m_isInPlace =
        SetFileInformationByHandle(file.Get(), kRenameInformation, space.data(), static_cast<DWORD>(space.size())) != 0;
    return m_isInPlace;
}

/// A scanner or a reader may hold the file for a moment.
bool MoveInTheEnd(Temporary& temporary, const std::wstring& target)
{
    constexpr std::chrono::milliseconds kPause(50);
    constexpr int kTries = 20;
    for (int tries = 0; tries < kTries; ++tries) {
        if (temporary.MoveTo(target)) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED && error != ERROR_LOCK_VIOLATION) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
        SetLastError(error);
    }
    return false;
}

}  // namespace

LockedFile::LockedFile(std::string path, std::chrono::milliseconds patience) : m_path(std::move(path))
{
    WaitUntilLocked(patience);
}

LockedFile::~LockedFile() = default;

bool LockedFile::TryLock()
{
    OwnedHandle file = OpenToEdit(Wide(m_path));
    RequireCall(file.IsOpen() || GetLastError() == ERROR_SHARING_VIOLATION, m_path);
    if (file.IsOpen() && GetFileType(file.Get()) != FILE_TYPE_DISK) {
        throw Failure(ExitCode::FileError, m_path, "not a regular file");
    }
    if (!file.IsOpen() || !TakeLock(file.Get())) {
        return false;
    }
    std::wstring final = FinalPath(file.Get(), m_path);
    m_handles.reset(new Handles{std::move(file), std::move(final)});
    // Whoever held the lock before may have put a new file in this one's place.
    return IsInPlace();
}

bool LockedFile::IsInPlace() const
{
    const OwnedHandle named(CreateFileW(m_handles->path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION other{};
    return named.IsOpen() && GetFileInformationByHandle(m_handles->file.Get(), &one) != 0 &&
           GetFileInformationByHandle(named.Get(), &other) != 0 &&
           one.dwVolumeSerialNumber == other.dwVolumeSerialNumber && one.nFileIndexHigh == other.nFileIndexHigh &&
           one.nFileIndexLow == other.nFileIndexLow;
}

std::string LockedFile::Read() const
{
    std::string bytes;
    RequireCall(ReadAll(m_handles->file.Get(), bytes), m_path);
    return bytes;
}

void LockedFile::Rehearse() const
{
    // A file that vanishes with its handle: whether the folder takes one.
    const std::wstring name = PathBeside(m_handles->path, m_path);
    const OwnedHandle created(CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    RequireCall(created.IsOpen(), m_path);
    static_cast<void>(AccessListOf(m_handles->path, m_path));
}

void LockedFile::Replace(std::string_view bytes, const std::string* expected)
{
    Temporary temporary(m_handles->path, true, bytes, m_path);
    RequireUnchanged(expected);
    if (!temporary.MoveOverOpenFile(m_handles->path)) {
        // The lock ends here. An editor that takes it before the move finds the file changed when it replaces it.
        m_handles->file.Close();
        RequireCall(MoveInTheEnd(temporary, m_handles->path), m_path);
    }
    m_handles.reset();
}

void WriteWhole(const std::string& path, std::string_view bytes)
{
    std::wstring target = Wide(path);
    bool exists = false;
    {
        const OwnedHandle file = OpenToEdit(target);
        RequireCall(file.IsOpen() || GetLastError() == ERROR_FILE_NOT_FOUND, path);
        exists = file.IsOpen();
        if (exists && GetFileType(file.Get()) != FILE_TYPE_DISK) {
            throw Failure(ExitCode::FileError, path, "not a regular file");
        }
        if (exists) {
            target = FinalPath(file.Get(), path);
        }
    }
    Temporary temporary(target, exists, bytes, path);
    RequireCall(MoveInTheEnd(temporary, target), path);
}

}  // namespace zupm::tool
