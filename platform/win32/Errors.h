/// The operating system's error numbers as result codes.
#pragma once

#include <cstdint>

#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// The result code of a Win32 error: numbers that mean the same to a caller share one code.
[[nodiscard]] result::Code CodeFromError(std::uint32_t error) noexcept;

/// The result code of the calling thread's last error; never success.
[[nodiscard]] result::Code CodeFromLastError() noexcept;

}  // namespace zupm::win32
