/// Replacing one file in one step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ByteSource.h"
#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// Growing waits, about a second in all: how long another process may keep a file to itself.
class Patience {
public:
    /// Sleeps once; false, without sleeping, when the second is over.
    [[nodiscard]] bool Wait() noexcept;

private:
    std::uint32_t m_waited = 0;
    std::uint32_t m_next = 5;
};

/// What is known about the file that is to be replaced.
struct Target {
    std::u16string path;
    bool exists = false;
    bool isRegular = true;
    std::uint32_t attributes = 0;
    /// Its access list as a security descriptor; empty when the file system has none or does not report it.
    std::vector<std::byte> security;
};

/// Who has the target open, and locked, while it is replaced.
class TargetHolder {
public:
    TargetHolder() = default;
    TargetHolder(const TargetHolder&) = delete;
    TargetHolder& operator=(const TargetHolder&) = delete;

    /// Called before every attempt, with the new bytes on the disk: takes the target again if it was let go, and
    /// checks it for the last time. Failure ends the replacement with its code. May throw std::bad_alloc.
    [[nodiscard]] virtual result::Code PrepareMove() = 0;

    /// Called right before an attempt that cannot succeed while the holder has the target open.
    virtual void LetGo() noexcept = 0;

protected:
    ~TargetHolder() = default;
};

/// ReplaceFileAtomically for a path in its full form; may throw std::bad_alloc.
[[nodiscard]] result::Code ReplaceFull(const std::u16string& full, ByteSource& bytes);

/// The same for an inspected regular file that somebody holds open with deletion shared. WrittenNotFlushed when the
/// new file is in place and the folder could not be flushed.
[[nodiscard]] result::Code ReplaceHeld(Target& target, ByteSource& bytes, TargetHolder& holder);

}  // namespace zupm::win32
