/// An owned file handle.
#pragma once

#include <windows.h>

#include <memory>

namespace zupm::win32 {

/// Sharing that disturbs nobody.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

/// Null when there is none: INVALID_HANDLE_VALUE never gets in.
using Handle = std::unique_ptr<HANDLE, HandleCloser>;

[[nodiscard]] inline Handle OwnFile(HANDLE handle) noexcept
{
    return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace zupm::win32
