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

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Backup.h"
#include "tools/zupolicy/commands/BackupName.h"

namespace zupm::tool {
namespace {

/// Owns an open file.
class OwnedHandle {
public:
    explicit OwnedHandle(HANDLE handle) : m_handle(handle) {}
    ~OwnedHandle()
    {
        if (IsOpen()) {
            CloseHandle(m_handle);
        }
    }
    OwnedHandle(OwnedHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    OwnedHandle& operator=(OwnedHandle&&) = delete;

    [[nodiscard]] HANDLE Get() const noexcept { return m_handle; }
    [[nodiscard]] bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

std::wstring Wide(const std::string& path)
{
    return std::filesystem::path(FromUtf8(path)).wstring();
}

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

using NewFile = std::pair<std::string, OwnedHandle>;

/// Nothing when the name is taken; a link counts as taken.
std::optional<NewFile> CreateBackup(const std::string& name, SECURITY_ATTRIBUTES* rights)
{
    OwnedHandle created(CreateFileW(Wide(name).c_str(), GENERIC_WRITE, 0, rights, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (created.IsOpen()) {
        return NewFile(name, std::move(created));
    }
    const DWORD error = GetLastError();
    const bool isTaken = GetFileAttributesW(Wide(name).c_str()) != INVALID_FILE_ATTRIBUTES;
    if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS && !isTaken) {
        SetLastError(error);
        Fail("the backup " + name + " cannot be written");
    }
    return std::nullopt;
}

bool CopyBytes(HANDLE from, HANDLE to)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    for (;;) {
        DWORD count = 0;
        DWORD written = 0;
        if (ReadFile(from, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) == 0) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        if (WriteFile(to, piece.data(), count, &written, nullptr) == 0 || written != count) {
            return false;
        }
    }
}

}  // namespace

std::string WriteBackup(const std::string& file, const std::string& suffix)
{
    const OwnedHandle original = OpenOriginal(file);
    Rights rights(original.Get());
    std::string name;
    bool isComplete = false;
    {
        const NewFile backup = CreateUnderFreeName(
            file, suffix, [&](const std::string& candidate) { return CreateBackup(candidate, rights.Get()); });
        name = backup.first;
        isComplete = CopyBytes(original.Get(), backup.second.Get()) && FlushFileBuffers(backup.second.Get()) != 0;
    }
    if (!isComplete) {
        const DWORD error = GetLastError();
        RemoveBackup(name);
        SetLastError(error);
        Fail("the backup " + name + " cannot be written");
    }
    return name;
}

void RemoveBackup(const std::string& backup) noexcept
{
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::path(FromUtf8(backup)), ignored);
}

}  // namespace zupm::tool
