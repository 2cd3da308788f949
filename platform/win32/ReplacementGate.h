/// Keeping other editors of this machine away from a file that nobody has locked for a moment.
#pragma once

#include "platform/win32/Handle.h"

namespace zupm::win32 {

struct FileIdentity;

/// A named mutex of the system for one file: held while its lock is let go for a move, and while a lock is taken.
///
/// Best effort: who cannot have it within a moment goes on without, because anybody may keep a mutex whose name he
/// knows. Then, and between machines that share a folder, a file that is let go can be locked by another editor.
/// Threads   Enter and Leave on the same thread.
class ReplacementGate {
public:
    ReplacementGate() = default;
    ~ReplacementGate() { Leave(); }
    ReplacementGate(const ReplacementGate&) = delete;
    ReplacementGate& operator=(const ReplacementGate&) = delete;

    void Enter(const FileIdentity& file) noexcept;
    void Leave() noexcept;
    [[nodiscard]] bool IsEntered() const noexcept { return m_mutex != nullptr; }

private:
    /// Owned by the thread while it is there.
    Handle m_mutex;
};

}  // namespace zupm::win32
