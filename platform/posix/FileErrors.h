/// The system's error numbers as the component's result codes.
#pragma once

#include <cerrno>

#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// One row of the table below.
struct ErrorMeaning {
    int number;
    result::Code code;
};

inline constexpr ErrorMeaning kErrorMeanings[] = {
    {ENOENT, result::FileNotFound},     {ENOTDIR, result::PathNotFound},     {EACCES, result::AccessDenied},
    {EPERM, result::AccessDenied},      {EISDIR, result::AccessDenied},      {EROFS, result::WriteProtected},
    {ENOSPC, result::DiskFull},         {EDQUOT, result::QuotaExceeded},     {EFBIG, result::FileTooLarge},
    {EOVERFLOW, result::FileTooLarge},  {ENAMETOOLONG, result::NameTooLong}, {EINVAL, result::InvalidName},
    {EILSEQ, result::InvalidName},      {ELOOP, result::InvalidName},        {EMFILE, result::TooManyOpenFiles},
    {ENFILE, result::TooManyOpenFiles}, {ENOMEM, result::OutOfMemory},       {ETXTBSY, result::SharingViolation},
    {EBUSY, result::SharingViolation},  {EAGAIN, result::SharingViolation},  {ENXIO, result::NotSupported},
    {ENODEV, result::NotSupported},     {EOPNOTSUPP, result::NotSupported},  {ENOSYS, result::NotSupported},
    {ENOLCK, result::NotSupported},     {ENOTSUP, result::NotSupported},
};

/// The code for an error number; InputOutputError for every number without a row.
[[nodiscard]] constexpr result::Code CodeOfError(int number)
{
    for (const ErrorMeaning& row : kErrorMeanings) {
        if (row.number == number) {
            return row.code;
        }
    }
    return result::InputOutputError;
}

/// The code for the error of the system call that just failed.
[[nodiscard]] inline result::Code LastError() noexcept
{
    return CodeOfError(errno);
}

}  // namespace zupm::native
