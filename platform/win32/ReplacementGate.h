/// Keeping other editors of this machine away from a file that nobody has locked for a moment.
#pragma once

#include <cstdint>

#include "platform/win32/Handle.h"

namespace zupm::win32 {

struct FileIdentity;

/// A named mutex of the system for one file: held while its lock is let go for a move, and while a lock is taken.
///
/// Between machines that share a folder there is no gate: a file that is let go can be locked by another editor there.
/// Threads   Enter and Leave on the same thread.
class ReplacementGate {
public:
    ReplacementGate() = default;
    ~ReplacementGate() { Leave(); }
    ReplacementGate(const ReplacementGate&) = delete;
    ReplacementGate& operator=(const ReplacementGate&) = delete;

    /// False when somebody else had it all the time. True without a mutex (the system has none left, or refuses it):
    /// there is no gate then.
    [[nodiscard]] bool Enter(const FileIdentity& file, std::uint32_t milliseconds) noexcept;
    void Leave() noexcept;
    [[nodiscard]] bool IsEntered() const noexcept { return m_mutex != nullptr; }

private:
    /// Owned by the thread while it is not null.
    Handle m_mutex;
};

}  // namespace zupm::win32
