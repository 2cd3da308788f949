/// An open file of Windows.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"

namespace zupm::tool {

/// Owns an open file, or none.
class OwnedHandle {
public:
    explicit OwnedHandle(HANDLE handle) : m_handle(handle) {}
    ~OwnedHandle() { Close(); }
    OwnedHandle(OwnedHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    OwnedHandle& operator=(OwnedHandle&&) = delete;

    void Close() noexcept
    {
        if (IsOpen()) {
            CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
        }
    }
    [[nodiscard]] HANDLE Get() const noexcept { return m_handle; }
    [[nodiscard]] bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

/// A UTF-8 path in the form that the system's calls take, however long it is.
[[nodiscard]] inline std::wstring Wide(const std::string& path)
{
    return ForOpening(std::filesystem::path(FromUtf8(path))).wstring();
}

/// Whether the whole file was read, from its beginning; the reason is the thread's last error.
[[nodiscard]] inline bool ReadAll(HANDLE from, std::string& bytes)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    bytes.clear();
    bool isRead = SetFilePointerEx(from, LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0;
    for (DWORD count = 1; isRead && count != 0;) {
        isRead = ReadFile(from, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) != 0;
        bytes.append(piece.data(), isRead ? count : 0);
    }
    return isRead;
}

/// Whether all bytes were written; the reason is the thread's last error.
[[nodiscard]] inline bool WriteAll(HANDLE to, std::string_view bytes)
{
    constexpr std::size_t kPiece = std::size_t{16} << 20u;
    while (!bytes.empty()) {
        DWORD written = 0;
        if (WriteFile(to, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kPiece)), &written, nullptr) == 0) {
            return false;
        }
        if (written == 0) {
            SetLastError(ERROR_DISK_FULL);
            return false;
        }
        bytes.remove_prefix(written);
    }
    return true;
}

}  // namespace zupm::tool
