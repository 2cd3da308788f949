/// The module under test and the system's registration program.
#pragma once

#include <string>
#include <vector>

namespace zupm::test {

/// Full path of the module: it lies beside the test program.
[[nodiscard]] std::wstring ModulePath();

/// A path beside the test program.
[[nodiscard]] std::wstring BesideProgram(const std::wstring& name);

/// Runs a command line and gives its exit code; throws when it cannot be started.
[[nodiscard]] unsigned long RunProgram(std::wstring commandLine);

/// Runs regsvr32 silently on the module, with more options, and gives its exit code.
[[nodiscard]] unsigned long RunRegistration(const std::vector<std::wstring>& options);

/// For failure messages.
[[nodiscard]] std::string Narrow(const std::wstring& text);

}  // namespace zupm::test
