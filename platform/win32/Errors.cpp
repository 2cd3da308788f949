#include "platform/win32/Errors.h"

#include <windows.h>

namespace zupm::win32 {

namespace {

struct Row {
    DWORD error;
    result::Code code;
};

constexpr Row kSynonyms[] = {
    {ERROR_NOT_ENOUGH_MEMORY, result::OutOfMemory},
    {ERROR_NO_SYSTEM_RESOURCES, result::OutOfMemory},
    {ERROR_COMMITMENT_LIMIT, result::OutOfMemory},
    {ERROR_LOCK_VIOLATION, result::SharingViolation},
    {ERROR_USER_MAPPED_FILE, result::SharingViolation},
    {ERROR_UNABLE_TO_REMOVE_REPLACED, result::SharingViolation},
    {ERROR_HANDLE_DISK_FULL, result::DiskFull},
    {ERROR_BAD_PATHNAME, result::InvalidName},
    {ERROR_DIRECTORY, result::InvalidName},
    {ERROR_BAD_NETPATH, result::PathNotFound},
    {ERROR_BAD_NET_NAME, result::PathNotFound},
    {ERROR_INVALID_DRIVE, result::PathNotFound},
    {ERROR_NOT_READY, result::InputOutputError},
    {ERROR_CRC, result::InputOutputError},
    {ERROR_READ_FAULT, result::InputOutputError},
    {ERROR_WRITE_FAULT, result::InputOutputError},
};

}  // namespace

result::Code CodeFromError(std::uint32_t error) noexcept
{
    for (const Row& row : kSynonyms) {
        if (row.error == error) {
            return row.code;
        }
    }
    return HRESULT_FROM_WIN32(error);
}

result::Code CodeFromLastError() noexcept
{
    const DWORD error = GetLastError();
    return error == ERROR_SUCCESS ? result::InputOutputError : CodeFromError(error);
}

}  // namespace zupm::win32
