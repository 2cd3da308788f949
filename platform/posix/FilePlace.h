/// Where a path leads: a folder, held open, and a name in it.
#pragma once

#include <string>

#include "platform/posix/FileHandle.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// A name in an open folder, at the end of all symbolic links.
///
/// Invariant `file` is what `name` meant in `folder` when it was opened; it owns nothing when there was no such file.
struct FilePlace {
    FileHandle folder;
    std::string name;
    FileHandle file;
};

/// Opens the folder of `path` and, when it exists, the file, with the `flags` of open(2). Each folder on the way is
/// opened once, and the next step starts at it.
///
/// Links that the path ends with are read one by one, because the file at their end may be missing, and by the rule
/// that the system has for links in folders like /tmp (protected_symlinks), whether or not it is switched on: in a
/// sticky folder that anybody may write, only the caller's own links and those of the folder's owner are followed.
/// AccessDenied otherwise. PathNotFound (no such folder), InvalidName (links without end), or the code of the failed
/// call.
[[nodiscard]] result::Code OpenPlace(const std::string& path, int flags, FilePlace& place);

/// Whether the place's name means the file that is open, now.
/// Success, FileChanged (another file, none, a link), or the code of the failed call.
[[nodiscard]] result::Code CheckSameFile(const FilePlace& place) noexcept;

}  // namespace zupm::native
