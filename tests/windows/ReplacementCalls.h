/// Calls of the system by which a file is replaced, answered by a test.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace zupm::test {

/// What the calls of this program lead to; what is empty leads to the system.
struct ReplacementCalls {
    /// The error of GetFileSecurityW; 0 for the system's answer.
    DWORD accessListError = 0;
    /// MoveFileExW from, to; and ReplaceFileW target, replacement, backup. An error, or ERROR_SUCCESS.
    std::function<DWORD(const std::wstring&, const std::wstring&)> move;
    std::function<DWORD(const std::wstring&, const std::wstring&, const std::wstring&)> replace;
};

/// The calls that are in force.
[[nodiscard]] ReplacementCalls& Calls();

/// The system's own, in the same form.
[[nodiscard]] DWORD MoveBySystem(const std::wstring& from, const std::wstring& to, DWORD flags);
[[nodiscard]] DWORD ReplaceBySystem(const std::wstring& target, const std::wstring& replacement,
                                    const std::wstring& backup);

}  // namespace zupm::test
