#include "platform/win32/Paths.h"

#include <windows.h>

#include <utility>

#include "platform/win32/Errors.h"
#include "platform/win32/Wide.h"
#include "text/AsciiCase.h"
#include "text/Utf.h"

namespace zupm::win32 {

namespace {

constexpr std::u16string_view kLongPrefix = u"\\\\?\\";
constexpr std::u16string_view kLongShare = u"\\\\?\\UNC\\";
constexpr std::u16string_view kDevicePrefix = u"\\\\.\\";
constexpr std::u16string_view kShare = u"\\\\";

// Room for the temporary's name: a folder of this length can still hold it without the prefix.
constexpr std::size_t kLongestPlainPath = MAX_PATH - 48;

/// The part of a share's path after the server's name: `pipe\name` of `\\server\pipe\name`.
std::u16string_view BelowServer(std::u16string_view full) noexcept
{
    std::u16string_view rest;
    if (full.starts_with(kLongShare)) {
        rest = full.substr(kLongShare.size());
    } else if (full.starts_with(kShare) && !full.starts_with(kLongPrefix)) {
        rest = full.substr(kShare.size());
    }
    const std::size_t separator = rest.find(u'\\');
    return separator == std::u16string_view::npos ? std::u16string_view() : rest.substr(separator + 1);
}

}  // namespace

result::Code FullPath(std::u16string_view path, std::u16string& full)
{
    if (path.empty() || path.find(u'\0') != std::u16string_view::npos || FindInvalidUtf16(path) != kValid) {
        return result::InvalidName;
    }
    const std::u16string given(path);
    full.assign(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = GetFullPathNameW(Wide(given), static_cast<DWORD>(full.size()), WideBuffer(full), nullptr);
        if (length == 0) {
            return CodeFromLastError();
        }
        const bool fits = length < full.size();
        full.resize(length);
        if (fits) {
            break;
        }
    }
    const bool prefixed = full.starts_with(kLongPrefix) || full.starts_with(kDevicePrefix);
    if (full.size() > kLongestPlainPath && !prefixed) {
        full = full.starts_with(kShare) ? std::u16string(kLongShare).append(full, kShare.size())
                                        : std::u16string(kLongPrefix).append(full);
    }
    return result::Success;
}

result::Code FinalPath(void* handle, std::u16string& path)
{
    std::u16string real(MAX_PATH, u'\0');
    DWORD kind = VOLUME_NAME_DOS;
    for (;;) {
        const DWORD length = GetFinalPathNameByHandleW(handle, WideBuffer(real), static_cast<DWORD>(real.size()), kind);
        if (length == 0) {
            const DWORD error = GetLastError();
            if (error != ERROR_PATH_NOT_FOUND || kind == VOLUME_NAME_GUID) {
                return CodeFromError(error);
            }
            kind = VOLUME_NAME_GUID;
            continue;
        }
        const bool fits = length < real.size();
        real.resize(length);
        if (fits) {
            path = std::move(real);
            return result::Success;
        }
    }
}

bool NamesDevice(std::u16string_view full) noexcept
{
    if (full.starts_with(kDevicePrefix)) {
        return true;
    }
    const std::u16string_view below = BelowServer(full);
    return EqualsIgnoringAsciiCase(below.substr(0, below.find(u'\\')), std::u16string_view(u"pipe"));
}

std::u16string FolderOf(const std::u16string& full)
{
    return full.substr(0, full.find_last_of(u"\\/") + 1);
}

}  // namespace zupm::win32
