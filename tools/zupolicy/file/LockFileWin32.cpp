#include <windows.h>

#include <system_error>

#include "file/LockFile.h"

namespace zupm::tool {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void ThrowLast()
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

HANDLE HandleOf(std::intptr_t file)
{
    return reinterpret_cast<HANDLE>(file);
}

/// Whether it is a file, and not a link to one.
bool IsPlainFile(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION information{};
    constexpr DWORD kOther = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
    return GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &information) != 0 &&
           (information.dwFileAttributes & kOther) == 0;
}

}  // namespace

// The folder's access list says who may use a new lock file, as it does for the guarded file.
LockFile::LockFile(const std::filesystem::path& path, const std::filesystem::path&)
    : m_file(reinterpret_cast<std::intptr_t>(
          CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)))
{
    if (HandleOf(m_file) == INVALID_HANDLE_VALUE) {
        ThrowLast();
    }
    if (!IsPlainFile(HandleOf(m_file))) {
        CloseHandle(HandleOf(m_file));
        throw std::system_error(std::make_error_code(std::errc::not_supported));
    }
}

LockFile::~LockFile()
{
    CloseHandle(HandleOf(m_file));
}

bool LockFile::TryLock()
{
    OVERLAPPED begin{};
    if (LockFileEx(HandleOf(m_file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &begin) != 0) {
        return true;
    }
    if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) {
        ThrowLast();
    }
    return false;
}

std::uint64_t LockFile::Holder() const
{
    return 0;
}

}  // namespace zupm::tool
