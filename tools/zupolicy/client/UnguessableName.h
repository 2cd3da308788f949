/// Names of temporary files on Windows.
#pragma once

#include <string>

namespace zupm::tool {

// Both are empty, with the thread's last error, when the system has no random bytes.

/// 32 hexadecimal digits that nobody can guess.
[[nodiscard]] std::wstring UnguessableDigits();
/// A path with such digits for a temporary file beside another file.
[[nodiscard]] std::wstring TemporaryBeside(const std::wstring& file);

}  // namespace zupm::tool
