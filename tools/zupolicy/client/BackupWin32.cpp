#include <windows.h>

#include <aclapi.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/client/BackupName.h"
#include "tools/zupolicy/client/UnguessableName.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/WindowsHandle.h"

namespace zupm::tool {
namespace {

[[noreturn]] void Fail(const std::string& what)
{
    throw Failure(ExitCode::FileError, what + ": " + std::system_category().message(static_cast<int>(GetLastError())));
}

OwnedHandle OpenOriginal(const std::string& file)
{
    OwnedHandle opened(CreateFileW(Wide(file).c_str(), GENERIC_READ | READ_CONTROL,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                   nullptr));
    if (!opened.IsOpen()) {
        Fail(file);
    }
    return opened;
}

/// The file's rights, for the new file to have from its first moment on.
class Rights {
public:
    explicit Rights(HANDLE file)
    {
        if (GetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                            &m_descriptor) != ERROR_SUCCESS) {
            m_descriptor = nullptr;
        }
        m_attributes = {sizeof(m_attributes), m_descriptor, FALSE};
    }
    ~Rights() { LocalFree(m_descriptor); }
    Rights(const Rights&) = delete;
    Rights& operator=(const Rights&) = delete;

    [[nodiscard]] SECURITY_ATTRIBUTES* Get() { return m_descriptor == nullptr ? nullptr : &m_attributes; }

private:
    PSECURITY_DESCRIPTOR m_descriptor = nullptr;
    SECURITY_ATTRIBUTES m_attributes{};
};

/// A colon would name a stream of the original, and the other characters stand for something else too.
void RequireSuffix(const std::string& backup, const std::string& file)
{
    if (backup.find_first_of("<>:\"|?*", file.size()) != backup.npos) {
        throw Failure(ExitCode::FileError, "the backup " + backup + " cannot be written: the name is not possible");
    }
}

bool CopyBytes(HANDLE from, HANDLE to)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    for (;;) {
        DWORD count = 0;
        if (ReadFile(from, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) == 0) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        if (!WriteAll(to, {piece.data(), count})) {
            return false;
        }
    }
}

[[noreturn]] void FailToWrite(const std::string& backup)
{
    Fail("the backup " + backup + " cannot be written");
}

/// A copy beside the backup, under a name that nobody can guess; it goes again unless it becomes the backup.
class Copy {
public:
    explicit Copy(const std::string& backup) : m_name(TemporaryBeside(Wide(backup)))
    {
        if (m_name.empty()) {
            FailToWrite(backup);
        }
    }
    ~Copy()
    {
        if (m_exists) {
            DeleteFileW(m_name.c_str());
        }
    }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    /// Writes the bytes of a file.
    [[nodiscard]] bool Fill(HANDLE from, SECURITY_ATTRIBUTES* rights)
    {
        const OwnedHandle created(
            CreateFileW(m_name.c_str(), GENERIC_WRITE, 0, rights, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        m_exists = created.IsOpen();
        return m_exists && CopyBytes(from, created.Get()) && FlushFileBuffers(created.Get()) != 0;
    }
    /// Fails when the name is taken; a link counts as taken.
    [[nodiscard]] bool TakeFreeName(const std::wstring& name)
    {
        m_exists = MoveFileExW(m_name.c_str(), name.c_str(), MOVEFILE_WRITE_THROUGH) == 0;
        return !m_exists;
    }

private:
    std::wstring m_name;
    bool m_exists = false;
};

/// The name of the backup; nothing when it is taken.
std::optional<std::string> Named(Copy& copy, const std::string& backup)
{
    const std::wstring name = Wide(backup);
    if (copy.TakeFreeName(name)) {
        return backup;
    }
    const DWORD error = GetLastError();
    const bool isTaken = GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS && !isTaken) {
        SetLastError(error);
        FailToWrite(backup);
    }
    return std::nullopt;
}

}  // namespace

std::string WriteBackup(const std::string& file, const std::string& suffix)
{
    RequireSuffix(file + suffix, file);
    const OwnedHandle original = OpenOriginal(file);
    Rights rights(original.Get());
    std::optional<Copy> copy;
    return CreateUnderFreeName(file, suffix, [&](const std::string& backup) {
        if (!copy) {
            copy.emplace(backup);
            if (!copy->Fill(original.Get(), rights.Get())) {
                FailToWrite(backup);
            }
        }
        return Named(*copy, backup);
    });
}

void RemoveBackup(const std::string& backup) noexcept
{
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::path(FromUtf8(backup)), ignored);
}

bool AreEqualNames(const std::filesystem::path& one, const std::filesystem::path& other)
{
    return CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void RequirePossibleName(const std::string& backup)
{
    const std::size_t name = backup.find_last_of("/\\");
    RequireSuffix(backup, name == backup.npos ? std::string() : backup.substr(0, name));
    // Not every system reports a name that is too long before it creates the file.
    constexpr std::size_t kLongestName = 255;
    if (std::filesystem::path(FromUtf8(backup)).filename().wstring().size() > kLongestName) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        Fail("the backup " + backup + " cannot be written");
    }
    if (GetFileAttributesW(Wide(backup).c_str()) == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND) {
        Fail("the backup " + backup + " cannot be written");
    }
}

std::string ReadBackup(const std::string& backup)
{
    const OwnedHandle opened(CreateFileW(Wide(backup).c_str(), GENERIC_READ,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!opened.IsOpen()) {
        Fail(backup);
    }
    BY_HANDLE_FILE_INFORMATION status{};
    if (GetFileInformationByHandle(opened.Get(), &status) == 0) {
        Fail(backup);
    }
    if ((status.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
        throw Failure(ExitCode::FileError, backup, "not a regular file");
    }
    std::string bytes;
    if (!ReadAll(opened.Get(), bytes)) {
        Fail(backup);
    }
    return bytes;
}

}  // namespace zupm::tool
