#include "platform/LogOutput.h"

#include <windows.h>

#include <new>

#include "platform/win32/Handle.h"
#include "platform/win32/Wide.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using win32::Handle;
using win32::Wide;
using win32::WideBuffer;

/// True when the process's token was raised above its user's normal rights: its environment comes from a caller with
/// fewer.
bool IsElevated() noexcept
{
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return true;
    }
    const Handle token(opened);
    TOKEN_ELEVATION_TYPE type = TokenElevationTypeDefault;
    DWORD size = 0;
    return GetTokenInformation(token.get(), TokenElevationType, &type, sizeof type, &size) == 0 ||
           type == TokenElevationTypeFull;
}

void WriteLine(HANDLE file, std::string_view line) noexcept
{
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace

std::optional<std::string> TrustedEnvironmentVariable(const char* name)
{
    if (IsElevated()) {
        return std::nullopt;
    }
    const std::u16string wideName = ToUtf16Lossy(name);
    std::u16string value(256, u'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length =
            GetEnvironmentVariableW(Wide(wideName), WideBuffer(value), static_cast<DWORD>(value.size()));
        if (length == 0 && GetLastError() != ERROR_SUCCESS) {
            return std::nullopt;
        }
        const bool fits = length < value.size();
        value.resize(length);
        if (fits) {
            return ToUtf8Lossy(value);
        }
    }
}

void AppendLogLine(const char* path, std::string_view line) noexcept
{
    if (*path == '\0') {
        // The process's own handle: not ours to close.
        const HANDLE standardError = GetStdHandle(STD_ERROR_HANDLE);
        if (standardError != nullptr && standardError != INVALID_HANDLE_VALUE) {
            WriteLine(standardError, line);
        }
        return;
    }
    try {
        // With the right to append alone, the system puts every write at the end of the file.
        const Handle file = win32::OwnFile(CreateFileW(Wide(ToUtf16Lossy(path)), FILE_APPEND_DATA | SYNCHRONIZE,
                                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                                       OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file != nullptr) {
            WriteLine(file.get(), line);
        }
    } catch (const std::bad_alloc&) {
        return;
    }
}

}  // namespace zupm
