/// Names of temporary files on Windows.
#pragma once

#include <string>

namespace zupm::tool {

/// The name of a temporary file, which nobody can guess; empty when the system has no random bytes.
[[nodiscard]] std::wstring UnguessableName();

/// The path up to its last separator, which is included; empty for a name alone.
[[nodiscard]] std::wstring FolderOf(const std::wstring& path);

}  // namespace zupm::tool
