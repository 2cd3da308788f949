/// Paths in the form that the system takes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// The path as UTF-8; nothing when it is empty, holds a null or an unpaired surrogate.
[[nodiscard]] std::optional<std::string> ToNativePath(std::u16string_view path);

/// A file's folder and its name there.
struct FolderAndName {
    std::string folder;  ///< "." for a bare name
    std::string name;    ///< empty when the path ends with a separator
};
[[nodiscard]] FolderAndName SplitPath(std::string_view path);

/// Opens a folder, its path starting at the open folder `start` (or AT_FDCWD), to name files in it: that takes the
/// right to search it, not to list it. PathNotFound when it is missing.
[[nodiscard]] result::Code OpenFolder(int start, const std::string& path, FileHandle& folder) noexcept;

/// The code for a file that could not be opened because of `error`: its folder may be what is missing.
[[nodiscard]] result::Code CodeOfMissing(const std::string& path, int error);

}  // namespace zupm::native
