/// One replacement of a file, step by step.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/posix/FilePlace.h"

namespace zupm::native {

/// A replacement in progress: a temporary file beside the target, which becomes the target.
///
/// Lifetime  One Run; destroying it removes the temporary file unless that has become the target. The place and the
///           bytes outlive it.
/// Errors    Result codes; throws std::bad_alloc, also for the source, with the old file as it was.
class Replacement {
public:
    Replacement(const FilePlace& place, ByteSource& bytes, Durability durability) noexcept
        : m_place(place), m_bytes(bytes), m_durability(durability)
    {
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// Replaces the place's file, or creates it. `check` runs last before the renaming and can refuse it.
    [[nodiscard]] result::Code Run(const std::function<result::Code()>& check);
    /// Whether the new file is in place: then a failure of Run is the folder's flush.
    [[nodiscard]] bool IsInPlace() const noexcept { return m_isInPlace; }

private:
    result::Code InspectTarget();
    result::Code OpenFolderToFlush();
    result::Code CreateTemporary();
    result::Code WriteTemporary();
    result::Code CopyTargetState();
    result::Code FinishTemporary();
    result::Code Rename();
    result::Code FlushName();

    const FilePlace& m_place;
    ByteSource& m_bytes;
    Durability m_durability;
    FileHandle m_folderToFlush;
    struct stat m_status {};
    FileHandle m_temporary;
    std::string m_temporaryName;
    bool m_isInPlace = false;
};

}  // namespace zupm::native
